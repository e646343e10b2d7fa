#include "window/Backdrops.h"

#include "platform/WindowSystem.h"

#include <QGuiApplication>
#include <QLoggingCategory>
#include <QScreen>
#include <QWindow>

namespace amberquill {

namespace {

Q_LOGGING_CATEGORY(captureLog, "amberquill.window", QtCriticalMsg)

// The width of the shadow that compositors draw around windows, in points.
constexpr int shadow = 16;

// The places of the program's dialogs and menus, in pixels of a screen's shrunk picture.
std::vector<QRect> ownWindows(const QScreen& screen, int shrink) {
    std::vector<QRect> places;
    for (const QWindow* window : QGuiApplication::topLevelWindows()) {
        // The launcher and the status item are of the type Qt::Window.
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
    // If the screen is not known, the primary one is the best guess.
    const QScreen* const covered = screen != nullptr ? screen : QGuiApplication::primaryScreen();
    const double ratio = covered != nullptr ? covered->devicePixelRatio() : 1;
    const QSize points = covered != nullptr ? covered->size() : QSize();
    const bool isBlurred = windowIsTranslucent && windows.blursBehindWindows();
    const BackgroundLook look{theme, points * ratio, ratio, isBlurred};
    const ScreenArea area = isBlurred ? ScreenArea() : capture.area(screen);
    const bool isCovered = !windowIsTranslucent || !windows.blendsWindows();
    const auto window = isCovered ? Backdrop::Window::Opaque : Backdrop::Window::Translucent;
    if (area.pixels.isEmpty()) {
        qCDebug(captureLog, isBlurred ? "the window system blurs what lies behind the window: no capture"
                                      : "no screen can be captured");
        return std::make_shared<const Backdrop>([] { return ScreenPicture(); }, look, window);
    }
    const int shrink = backdropShrink(ratio);
    return std::make_shared<const Backdrop>(
        [&capture, area, shrink, isCovered] { return capture.capture(area, shrink, isCovered); }, look,
        window,
        screen != nullptr && windows.tellsPlaces() ? ownWindows(*screen, shrink) : std::vector<QRect>());
}

} // namespace amberquill
