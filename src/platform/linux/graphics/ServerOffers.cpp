#include "platform/linux/graphics/ServerOffers.h"

#include <cstdint>
#include <cstdlib>
#include <memory>
#include <string_view>
#include <wayland-client.h>
#include <xcb/xcb.h>

namespace amberquill::desktop {
namespace {

[[nodiscard]] xcb_query_extension_cookie_t ask(xcb_connection_t* connection, std::string_view extension) {
    return xcb_query_extension(connection, static_cast<std::uint16_t>(extension.size()), extension.data());
}

[[nodiscard]] bool isPresent(xcb_connection_t* connection, xcb_query_extension_cookie_t question) {
    auto* reply = xcb_query_extension_reply(connection, question, nullptr);
    const bool present = reply != nullptr && reply->present != 0;
    std::free(reply); // NOLINT(cppcoreguidelines-no-malloc)
    return present;
}

void onGlobal(void* data, wl_registry*, std::uint32_t, const char* interface, std::uint32_t) {
    const std::string_view name(interface);
    if (name == "zwp_linux_dmabuf_v1" || name == "wl_drm") {
        static_cast<ServerOffers*>(data)->takesGpuBuffers = true;
    }
}

void onGlobalRemoved(void*, wl_registry*, std::uint32_t) {}

constexpr wl_registry_listener registryListener{onGlobal, onGlobalRemoved};

} // namespace

ServerOffers askX11Server() {
    const std::unique_ptr<xcb_connection_t, void (*)(xcb_connection_t*)> connection(
        xcb_connect(nullptr, nullptr), xcb_disconnect);
    if (xcb_connection_has_error(connection.get()) != 0) {
        return {};
    }
    const auto dri3 = ask(connection.get(), "DRI3");
    const auto nvidia = ask(connection.get(), "NV-GLX");
    return {.reached = true,
            .takesGpuBuffers = isPresent(connection.get(), dri3),
            .hasNvidiaGlx = isPresent(connection.get(), nvidia)};
}

ServerOffers askWaylandCompositor() {
    const std::unique_ptr<wl_display, void (*)(wl_display*)> display(
        wl_display_connect(nullptr), [](wl_display* it) { wl_display_disconnect(it); });
    if (!display) {
        return {};
    }
    ServerOffers offers{.reached = true};
    const std::unique_ptr<wl_registry, void (*)(wl_registry*)> registry(
        wl_display_get_registry(display.get()), [](wl_registry* it) { wl_registry_destroy(it); });
    wl_registry_add_listener(registry.get(), &registryListener, &offers);
    wl_display_roundtrip(display.get());
    return offers;
}

} // namespace amberquill::desktop
