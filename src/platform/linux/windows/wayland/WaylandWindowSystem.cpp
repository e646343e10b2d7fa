#include "platform/linux/windows/wayland/WaylandWindowSystem.h"

#include "platform/linux/windows/wayland/DialogFocus.h"

#include <QDeadlineTimer>
#include <QGuiApplication>
#include <QScreen>
#include <QWindow>
#include <qpa/qplatformnativeinterface.h>
#include <utility>
#include <wayland-client-core.h>

namespace amberquill::desktop {
namespace {

// For the compositor's globals. It has already sent them to Qt, so it answers quickly.
constexpr std::chrono::milliseconds compositorPatience{100};

// Sends xdg_toplevel.set_fullscreen without an output, so that the compositor chooses one; Qt's own request
// always names an output. The proxy is Qt's. False: the window has no proxy.
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

// Null: the window has no surface.
[[nodiscard]] wl_surface* surfaceOf(QWindow& window) {
    auto* native = QGuiApplication::platformNativeInterface();
    return static_cast<wl_surface*>(native->nativeResourceForWindow("surface", &window));
}

} // namespace

WaylandWindowSystem::WaylandWindowSystem(wl_display* display, MainQueue& queue)
    : events_(display)
    , globals_(events_)
    , blur_(globals_)
    , dialogFocus_(std::make_unique<DialogFocus>())
    , lastFrame_(queue) {
    const QDeadlineTimer deadline(compositorPatience);
    if (events_.roundTrip(deadline)) {
        blur_.follow();
        // A manager sends its capabilities only after it is bound: a second round trip.
        static_cast<void>(blur_.isUndecided() && events_.roundTrip(deadline));
    }
}

WaylandWindowSystem::~WaylandWindowSystem() = default;

void WaylandWindowSystem::follow() const {
    events_.handle();
    blur_.follow();
}

// One family of compositors draws black behind a full-screen window. These compositors offer copying of
// screens, the others do not.
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
    lastFrame_.cancel();
    if (!window.isVisible()) {
        window.setFlags(window.flags() | Qt::FramelessWindowHint);
        window.setWindowStates(Qt::WindowNoState);
        // A provisional size, until the compositor sends the size of the chosen output.
        window.resize(QGuiApplication::primaryScreen()->size());
        window.setVisible(true);
        if (!askForFullScreen(window)) {
            window.setWindowStates(Qt::WindowFullScreen);
        }
        // Before the window's first frame. Releases the effect of the earlier surface only now: without the
        // effect, the content behind a window that is being hidden would be seen sharp.
        follow();
        blur_.cover(surfaceOf(window));
    }
    // Qt 6.4 reads the token from the environment only, and removes it when it uses it. An unused token is
    // removed here, so that applications opened later do not inherit it.
    constexpr auto variable = "XDG_ACTIVATION_TOKEN";
    if (!token_.isEmpty()) {
        qputenv(variable, token_.toUtf8());
        token_.clear();
    }
    window.requestActivate();
    qunsetenv(variable);
}

void WaylandWindowSystem::withdraw(QWindow& window, std::function<void()> then) {
    lastFrame_.await(window, [&window, then = std::move(then)] {
        window.hide();
        then();
    });
}

} // namespace amberquill::desktop
