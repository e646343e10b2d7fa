#include "platform/linux/wayland/screencopy/WlrScreenCapture.h"

#include "platform/linux/capture/RowShrinker.h"
#include "platform/linux/wayland/screencopy/OutputReader.h"

#include <QGuiApplication>
#include <QScreen>
#include <utility>

namespace amberquill::desktop {

WlrScreenCapture::WlrScreenCapture(QByteArray display, std::chrono::milliseconds patience)
    : display_(std::move(display))
    , patience_(patience) {}

WlrScreenCapture::~WlrScreenCapture() = default;

ScreenArea WlrScreenCapture::area(const QScreen* screen) const {
    const QScreen* const known = screen != nullptr ? screen : QGuiApplication::primaryScreen();
    if (known == nullptr) {
        return {};
    }
    const QRectF points = known->geometry();
    const QSizeF pixels = points.size() * known->devicePixelRatio();
    return {QRect(points.topLeft().toPoint(), pixels.toSize()),
            screen != nullptr ? screen->name() : QString()};
}

ScreenPicture WlrScreenCapture::capture(const ScreenArea& area, int shrink, bool alsoWhole) {
    if (area.pixels.isEmpty() || shrink < 1 || shrink > RowShrinker::most) {
        return {};
    }
    if (!reader_) {
        reader_ = std::make_unique<OutputReader>(display_);
    }
    return reader_->read(area.output, {shrink, alsoWhole}, patience_);
}

} // namespace amberquill::desktop
