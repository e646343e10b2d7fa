#include "platform/linux/input/InputDevices.h"

#include "platform/linux/input/x11/X11ScrollDevices.h"
#include "platform/linux/input/x11/X11Shortcuts.h"

#include <QGuiApplication>
#include <private/qtx11extras_p.h>

namespace amberquill::desktop {

Q_LOGGING_CATEGORY(inputLog, "amberquill.input", QtCriticalMsg)

std::unique_ptr<GlobalShortcut> makeGlobalShortcut(MainQueue& queue, PortalShortcuts::Connect connect) {
    if (const auto* x11 = qGuiApp->nativeInterface<QNativeInterface::QX11Application>()) {
        auto shortcuts = std::make_unique<X11Shortcuts>(
            x11->connection(), static_cast<xcb_window_t>(QX11Info::appRootWindow()), queue);
        // The destructor of QAbstractNativeEventFilter removes it.
        qGuiApp->installNativeEventFilter(shortcuts.get());
        return shortcuts;
    }
    if (QGuiApplication::platformName().startsWith(u"wayland")) {
        return std::make_unique<PortalShortcuts>(queue, std::move(connect));
    }
    return std::make_unique<NullGlobalShortcut>();
}

std::unique_ptr<ScrollDevices> makeScrollDevices() {
    if (const auto* x11 = qGuiApp->nativeInterface<QNativeInterface::QX11Application>()) {
        return std::make_unique<X11ScrollDevices>(x11->connection());
    }
    return std::make_unique<NullScrollDevices>();
}

} // namespace amberquill::desktop
