#include "platform/linux/capture/x11/X11ScreenCapture.h"

#include "platform/linux/capture/ScreenCaptures.h"
#include "platform/linux/capture/ScreenRows.h"
#include "platform/linux/capture/x11/RootReader.h"

#include <QGuiApplication>
#include <QScreen>
#include <qpa/qplatformscreen.h>

namespace amberquill::desktop {

X11ScreenCapture::X11ScreenCapture(QByteArray display, const CapturePatience& patience)
    : display_(std::move(display))
    , patience_(patience) {}

X11ScreenCapture::~X11ScreenCapture() = default;

ScreenArea X11ScreenCapture::area(const QScreen* screen) const {
    // Not QScreen::geometry(), whose size is rounded at a fractional scale.
    const auto areaOf = [](const QScreen* each) { return ScreenArea{each->handle()->geometry()}; };
    std::vector<ScreenArea> all;
    for (const QScreen* each : QGuiApplication::screens()) {
        all.push_back(areaOf(each));
    }
    last_.forgetAllBut(all);
    return screen != nullptr ? areaOf(screen) : ScreenArea();
}

ScreenPicture X11ScreenCapture::capture(const ScreenArea& area, int shrink, bool alsoWhole) {
    if (area.pixels.isEmpty() || shrink < 1 || shrink > RowShrinker::most) {
        return {};
    }
    if (!reader_) {
        reader_ = std::make_unique<RootReader>(display_);
    }
    const ScreenRows rows =
        reader_->read(area.pixels, {shrink, alsoWhole}, sharesMemory_, {patience_.forEach, patience_.forAll});
    if (rows.isComplete()) {
        ScreenPicture picture = rows.picture();
        last_.keep(area, picture.shrunk);
        return picture;
    }
    qCDebug(captureLog) << "incomplete:" << area.pixels
                        << (reader_->isGone() ? "no X server" : "not all rows came in time");
    if (reader_->isGone()) {
        return {};
    }
    const QImage last = last_.of(area);
    return rows.pictureOver(!last.isNull() ? last : reader_->wallpaper(area.pixels, patience_.forSubstitute));
}

} // namespace amberquill::desktop
