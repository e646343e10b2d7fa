#include "platform/linux/windows/wayland/SeatlessCompositor.h"

#include "platform/linux/graphics/GraphicsFindings.h"

#include "platform/linux/windows/WindowSystems.h"

#include <algorithm>
#include <cstdint>
#include <memory>
#include <string_view>
#include <wayland-client.h>

namespace amberquill::desktop {
namespace {

constexpr auto inputMethodVariable = "QT_IM_MODULE";

void onGlobal(void* data, wl_registry*, std::uint32_t, const char* interface, std::uint32_t) {
    if (std::string_view(interface) == wl_seat_interface.name) {
        *static_cast<bool*>(data) = true;
    }
}

void onGlobalRemoved(void*, wl_registry*, std::uint32_t) {}

constexpr wl_registry_listener registryListener{onGlobal, onGlobalRemoved};

// Whether the compositor of $WAYLAND_DISPLAY runs and has no seat.
[[nodiscard]] bool isSeatless() {
    const std::unique_ptr<wl_display, void (*)(wl_display*)> display(
        wl_display_connect(nullptr), [](wl_display* it) { wl_display_disconnect(it); });
    if (!display) {
        return false;
    }
    bool hasSeat = false;
    const std::unique_ptr<wl_registry, void (*)(wl_registry*)> registry(
        wl_display_get_registry(display.get()), [](wl_registry* it) { wl_registry_destroy(it); });
    wl_registry_add_listener(registry.get(), &registryListener, &hasSeat);
    return wl_display_roundtrip(display.get()) >= 0 && !hasSeat;
}

} // namespace

void avoidInputMethodWithoutSeat(const Environment& environment) {
    const auto servers = displayServers(environment);
    const bool mayBeWayland =
        std::find(servers.begin(), servers.end(), DisplayServer::Wayland) != servers.end();
    // An inherited connection serves one client only, and Qt needs it.
    if (!mayBeWayland || environment("WAYLAND_SOCKET") ||
        !environment(inputMethodVariable).value_or(QByteArray()).isEmpty()) {
        return;
    }
    if (isSeatless()) {
        qCDebug(windowsLog) << "the compositor has no seat: its input method is not used";
        qputenv(inputMethodVariable, "compose"); // part of Qt
    }
}

} // namespace amberquill::desktop
