#include "window/Backdrops.h"

#include "platform/WindowSystem.h"

#include <QGuiApplication>
#include <QScreen>

namespace amberquill {

std::shared_ptr<const Backdrop> makeBackdrop(ScreenCapture& capture, const WindowSystem& windows,
                                             const QScreen* screen, BackgroundTheme theme,
                                             bool windowIsTranslucent) {
    // The best guess at what is not known.
    const QScreen* const covered = screen != nullptr ? screen : QGuiApplication::primaryScreen();
    const double ratio = covered != nullptr ? covered->devicePixelRatio() : 1;
    const QSize points = covered != nullptr ? covered->size() : QSize();
    const bool isBlurred = windowIsTranslucent && windows.blursBehindWindows();
    const BackgroundLook look{theme, points * ratio, ratio, isBlurred};
    const ScreenArea area = isBlurred ? ScreenArea() : capture.area(screen);
    if (area.pixels.isEmpty()) {
        return std::make_shared<const Backdrop>([] { return ScreenPicture(); }, look);
    }
    const bool isCovered = !windowIsTranslucent || !windows.blendsWindows();
    return std::make_shared<const Backdrop>([&capture, area, shrink = backdropShrink(ratio),
                                             isCovered] { return capture.capture(area, shrink, isCovered); },
                                            look);
}

} // namespace amberquill
