#include "window/Backdrops.h"

#include "platform/WindowSystem.h"

#include <QGuiApplication>
#include <QScreen>
#include <QWindow>

namespace amberquill {

namespace {

// What a compositor draws around a window, in points.
constexpr int shadow = 16;

// Where the program's dialogs and menus are, in pixels of the shrunk picture of a screen.
std::vector<QRect> ownWindows(const QScreen& screen, int shrink) {
    std::vector<QRect> places;
    for (const QWindow* window : QGuiApplication::topLevelWindows()) {
        // The launcher itself is a plain window, and so is its symbol in a tray.
        if (window->isVisible() && window->type() != Qt::Window) {
            const QRect frame = window->frameGeometry()
                                    .adjusted(-shadow, -shadow, shadow, shadow)
                                    .translated(-screen.geometry().topLeft());
            const double part = screen.devicePixelRatio() / shrink;
            places.push_back(
                QRectF(frame.x() * part, frame.y() * part, frame.width() * part, frame.height() * part)
                    .toAlignedRect());
        }
    }
    return places;
}

} // namespace

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
    const bool isCovered = !windowIsTranslucent || !windows.blendsWindows();
    const auto sheet = isCovered ? Backdrop::Sheet::Opaque : Backdrop::Sheet::Glass;
    if (area.pixels.isEmpty()) {
        return std::make_shared<const Backdrop>([] { return ScreenPicture(); }, look, sheet);
    }
    const int shrink = backdropShrink(ratio);
    return std::make_shared<const Backdrop>(
        [&capture, area, shrink, isCovered] { return capture.capture(area, shrink, isCovered); }, look, sheet,
        screen != nullptr && windows.tellsPlaces() ? ownWindows(*screen, shrink) : std::vector<QRect>());
}

} // namespace amberquill
