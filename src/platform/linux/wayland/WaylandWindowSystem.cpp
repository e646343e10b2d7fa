#include "platform/linux/wayland/WaylandWindowSystem.h"

#include <QGuiApplication>
#include <QWindow>

namespace amberquill::desktop {

void WaylandWindowSystem::setActivationToken(const QString& token) {
    token_ = token;
}

void WaylandWindowSystem::present(QWindow& window, QScreen*) {
    if (!window.isVisible()) {
        window.setFlags(window.flags() | Qt::FramelessWindowHint);
        window.setWindowStates(Qt::WindowFullScreen);
        window.setVisible(true);
    }
    // Qt 6.4 takes the token from the environment alone. It removes it from there once it is used; what is
    // not used must not reach the applications that are opened later.
    constexpr auto variable = "XDG_ACTIVATION_TOKEN";
    if (!token_.isEmpty()) {
        qputenv(variable, token_.toUtf8());
        token_.clear();
    }
    window.requestActivate();
    qunsetenv(variable);
}

void WaylandWindowSystem::withdraw(QWindow& window) {
    window.hide();
}

} // namespace amberquill::desktop
