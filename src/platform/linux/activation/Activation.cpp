#include "platform/linux/activation/Activation.h"

#include "platform/linux/activation/wayland/WaylandActivationTokens.h"
#include "platform/linux/activation/x11/X11ActivationTokens.h"
#include "platform/linux/activation/x11/X11StartupNotifications.h"

#include <QGuiApplication>
#include <qpa/qplatformnativeinterface.h>

namespace amberquill::desktop {

namespace {

const QNativeInterface::QX11Application* x11() {
    return qGuiApp->nativeInterface<QNativeInterface::QX11Application>();
}

} // namespace

std::unique_ptr<ActivationTokens> makeActivationTokens(MainQueue& queue) {
    if (x11() != nullptr) {
        return std::make_unique<X11ActivationTokens>();
    }
    if (QGuiApplication::platformName().startsWith(u"wayland")) {
        return std::make_unique<WaylandActivationTokens>(queue);
    }
    return std::make_unique<NullActivationTokens>();
}

std::unique_ptr<StartupNotifications> makeStartupNotifications() {
    if (const auto* const application = x11()) {
        const auto screen = reinterpret_cast<quintptr>(
            QGuiApplication::platformNativeInterface()->nativeResourceForIntegration("x11screen"));
        return std::make_unique<X11StartupNotifications>(application->connection(), static_cast<int>(screen));
    }
    return std::make_unique<NullStartupNotifications>();
}

} // namespace amberquill::desktop
