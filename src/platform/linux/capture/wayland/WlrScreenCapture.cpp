#include "platform/linux/capture/wayland/WlrScreenCapture.h"

#include "platform/linux/capture/ScreenCaptures.h"
#include "platform/linux/capture/ScreenRows.h"
#include "platform/linux/capture/wayland/OutputReader.h"

#include <QGuiApplication>
#include <QScreen>
#include <utility>

namespace amberquill::desktop {

WlrScreenCapture::WlrScreenCapture(QByteArray display, std::chrono::milliseconds patience)
    : display_(std::move(display))
    , patience_(patience) {}

WlrScreenCapture::~WlrScreenCapture() = default;

namespace {

// A null screen: the compositor chooses the output.
ScreenArea areaOnOutput(const QScreen* screen) {
    const QScreen* const known = screen != nullptr ? screen : QGuiApplication::primaryScreen();
    if (known == nullptr) {
        return {};
    }
    const QRectF points = known->geometry();
    const QSizeF pixels = points.size() * known->devicePixelRatio();
    return {QRect(points.topLeft().toPoint(), pixels.toSize()),
            screen != nullptr ? screen->name() : QString()};
}

} // namespace

ScreenArea WlrScreenCapture::area(const QScreen* screen) const {
    std::vector<ScreenArea> all{areaOnOutput(nullptr)};
    for (const QScreen* each : QGuiApplication::screens()) {
        all.push_back(areaOnOutput(each));
    }
    last_.forgetAllBut(all);
    return areaOnOutput(screen);
}

ScreenPicture WlrScreenCapture::capture(const ScreenArea& area, int shrink, bool alsoWhole) {
    if (area.pixels.isEmpty() || shrink < 1 || shrink > RowShrinker::most) {
        return {};
    }
    if (!reader_) {
        reader_ = std::make_unique<OutputReader>(display_);
    }
    ScreenPicture picture = reader_->read(area.output, {shrink, alsoWhole}, patience_);
    if (!picture.shrunk.isNull()) {
        last_.keep(area, picture.shrunk);
        return picture;
    }
    qCDebug(captureLog) << "no picture:" << area.output
                        << (reader_->isGone() ? "no compositor" : "not offered, refused or not in time");
    const QImage last = reader_->isGone() ? QImage() : last_.of(area);
    return last.isNull() ? ScreenPicture()
                         : ScreenRows(area.pixels.size(), shrink, alsoWhole).pictureOver(last);
}

} // namespace amberquill::desktop
