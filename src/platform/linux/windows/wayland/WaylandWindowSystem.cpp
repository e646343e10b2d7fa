#include "platform/linux/windows/wayland/WaylandWindowSystem.h"

#include "platform/linux/windows/wayland/DialogFocus.h"

#include <QDeadlineTimer>
#include <QGuiApplication>
#include <QScreen>
#include <QWindow>
#include <qpa/qplatformnativeinterface.h>
#include <wayland-client-core.h>

namespace amberquill::desktop {
namespace {

// For what the compositor offers, which Qt has been told a moment ago.
constexpr std::chrono::milliseconds compositorPatience{100};

// The request xdg_toplevel.set_fullscreen of xdg-shell without an output, which leaves the choice to the
// compositor. Qt's own request always names one. The proxy is Qt's. False where there is none.
[[nodiscard]] bool askForFullScreen(QWindow& window) {
    auto* native = QGuiApplication::platformNativeInterface();
    auto* toplevel = static_cast<wl_proxy*>(native->nativeResourceForWindow("xdg_toplevel", &window));
    if (toplevel == nullptr) {
        return false;
    }
    constexpr uint32_t setFullscreen = 11;
    wl_proxy_marshal(toplevel, setFullscreen, static_cast<wl_proxy*>(nullptr));
    return true;
}

// Null where it has none.
[[nodiscard]] wl_surface* surfaceOf(QWindow& window) {
    auto* native = QGuiApplication::platformNativeInterface();
    return static_cast<wl_surface*>(native->nativeResourceForWindow("surface", &window));
}

} // namespace

WaylandWindowSystem::WaylandWindowSystem(wl_display* display)
    : events_(display)
    , globals_(events_)
    , blur_(globals_)
    , dialogFocus_(std::make_unique<DialogFocus>()) {
    const QDeadlineTimer deadline(compositorPatience);
    if (events_.roundTrip(deadline)) {
        blur_.follow();
        // Where it is told whether it can blur after it has been taken up.
        static_cast<void>(blur_.isUndecided() && events_.roundTrip(deadline));
    }
}

WaylandWindowSystem::~WaylandWindowSystem() = default;

void WaylandWindowSystem::follow() const {
    events_.handle();
    blur_.follow();
}

// Compositors of one family draw nothing but black behind a full-screen window. They let their screens be
// copied, which others do not.
bool WaylandWindowSystem::blendsWindows() const {
    follow();
    return blur_.isOffered() || globals_.find("zwlr_screencopy_manager_v1") == nullptr;
}

bool WaylandWindowSystem::blursBehindWindows() const {
    follow();
    return blur_.isOffered();
}

void WaylandWindowSystem::setActivationToken(const QString& token) {
    token_ = token;
}

void WaylandWindowSystem::present(QWindow& window, QScreen*) {
    if (!window.isVisible()) {
        window.setFlags(window.flags() | Qt::FramelessWindowHint);
        window.setWindowStates(Qt::WindowNoState);
        // Until the compositor has told the size of its choice.
        window.resize(QGuiApplication::primaryScreen()->size());
        window.setVisible(true);
        if (!askForFullScreen(window)) {
            window.setWindowStates(Qt::WindowFullScreen);
        }
        // Before its first picture. The surface of an earlier showing has gone, and only now its effect goes:
        // without it, what is behind a window on its way off the screen would be seen sharp.
        follow();
        blur_.cover(surfaceOf(window));
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
