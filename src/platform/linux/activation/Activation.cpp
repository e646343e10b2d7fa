#include "platform/linux/activation/Activation.h"

#include "platform/linux/activation/wayland/XdgActivation.h"
#include "platform/linux/activation/x11/X11Activation.h"

#include <QGuiApplication>
#include <QtGlobal>
#include <qpa/qplatformnativeinterface.h>

namespace amberquill::desktop {

Q_LOGGING_CATEGORY(activationLog, "amberquill.activation", QtCriticalMsg)

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

QString takeStartToken(const InheritedEnvironment& start, QStringView platform) {
    constexpr auto activationToken = "XDG_ACTIVATION_TOKEN";
    constexpr auto startupId = "DESKTOP_STARTUP_ID";
    qunsetenv(activationToken);
    qunsetenv(startupId);
    const bool x11 = platform == u"xcb";
    const QByteArray first = start.value(x11 ? startupId : activationToken).value_or(QByteArray());
    const QByteArray second = start.value(x11 ? activationToken : startupId).value_or(QByteArray());
    return QString::fromUtf8(first.isEmpty() ? second : first);
}

} // namespace amberquill::desktop
