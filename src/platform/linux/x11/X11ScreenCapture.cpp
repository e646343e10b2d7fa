#include "platform/linux/x11/X11ScreenCapture.h"

#include "platform/linux/capture/RowShrinker.h"
#include "platform/linux/x11/RootReader.h"

#include <QScreen>
#include <qpa/qplatformscreen.h>

namespace amberquill::desktop {

X11ScreenCapture::X11ScreenCapture(QByteArray display, std::chrono::milliseconds patience)
    : display_(std::move(display))
    , patience_(patience) {}

X11ScreenCapture::~X11ScreenCapture() = default;

ScreenArea X11ScreenCapture::area(const QScreen* screen) const {
    // Not QScreen::geometry(), whose size is rounded at a fractional scale.
    return {screen != nullptr ? screen->handle()->geometry() : QRect()};
}

ScreenPicture X11ScreenCapture::capture(const ScreenArea& area, int shrink, bool alsoWhole) {
    if (area.pixels.isEmpty() || shrink < 1 || shrink > RowShrinker::most) {
        return {};
    }
    if (!reader_) {
        reader_ = std::make_unique<RootReader>(display_);
    }
    return reader_->read(area.pixels, {shrink, alsoWhole}, sharesMemory_, patience_);
}

} // namespace amberquill::desktop
