#include "platform/linux/windows/WindowSystems.h"

#include "platform/linux/wayland/WaylandWindowSystem.h"
#include "platform/linux/wayland/screencopy/WlrScreenCapture.h"
#include "platform/linux/windows/PlainWindowSystem.h"
#include "platform/linux/x11/X11ScreenCapture.h"
#include "platform/linux/x11/X11ScrollDevices.h"
#include "platform/linux/x11/X11WindowSystem.h"

#include <QGuiApplication>
#include <qpa/qplatformnativeinterface.h>

namespace amberquill::desktop {

using namespace Qt::StringLiterals;

std::unique_ptr<WindowSystem> makeWindowSystem() {
    if (const auto* x11 = qGuiApp->nativeInterface<QNativeInterface::QX11Application>()) {
        return std::make_unique<X11WindowSystem>(x11->connection());
    }
    if (QGuiApplication::platformName().startsWith(u"wayland"_s)) {
        return std::make_unique<WaylandWindowSystem>(static_cast<wl_display*>(
            QGuiApplication::platformNativeInterface()->nativeResourceForIntegration("wl_display")));
    }
    return std::make_unique<PlainWindowSystem>();
}

std::unique_ptr<ScrollDevices> makeScrollDevices() {
    if (const auto* x11 = qGuiApp->nativeInterface<QNativeInterface::QX11Application>()) {
        return std::make_unique<X11ScrollDevices>(x11->connection());
    }
    return std::make_unique<NullScrollDevices>();
}

std::unique_ptr<ScreenCapture> makeScreenCapture() {
    const bool isGuest = qEnvironmentVariable("XDG_SESSION_TYPE") == u"wayland"_s ||
                         !qEnvironmentVariableIsEmpty("WAYLAND_DISPLAY");
    if (!isGuest && qGuiApp->nativeInterface<QNativeInterface::QX11Application>() != nullptr) {
        return std::make_unique<X11ScreenCapture>();
    }
    if (QGuiApplication::platformName().startsWith(u"wayland"_s)) {
        return std::make_unique<WlrScreenCapture>();
    }
    return std::make_unique<NullScreenCapture>();
}

} // namespace amberquill::desktop
