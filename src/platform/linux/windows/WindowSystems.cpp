#include "platform/linux/windows/WindowSystems.h"

#include "platform/linux/windows/PlainWindowSystem.h"
#include "platform/linux/windows/wayland/WaylandWindowSystem.h"
#include "platform/linux/windows/x11/X11WindowSystem.h"

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

} // namespace amberquill::desktop
