#include "platform/linux/capture/wayland/OutputChoice.h"

#include "platform/linux/capture/wayland/StoredFrame.h"
#include "platform/linux/wayland/Globals.h"

#include "wlr-layer-shell-unstable-v1-client-protocol.h"

#include <wayland-client.h>

// The generated protocol code refers to pop-ups, which are not used here.
extern "C" const wl_interface xdg_popup_interface;
const wl_interface xdg_popup_interface{"xdg_popup", 1, 0, nullptr, 0, nullptr};

namespace amberquill::desktop {

namespace {

template<typename Object>
Object* bindIfOffered(const Globals& globals, const wl_interface& interface) {
    const auto* offered = globals.find(interface.name);
    return offered != nullptr ? static_cast<Object*>(globals.bind(*offered, interface, 1)) : nullptr;
}

struct Told {
    bool isConfigured = false;
    bool isClosed = false;
    std::uint32_t serial = 0;
    const wl_output* entered = nullptr;
};

constexpr wl_surface_listener surfaceListener{
    .enter = [](void* told, wl_surface*, wl_output* output) { static_cast<Told*>(told)->entered = output; },
    .leave = [](void*, wl_surface*, wl_output*) {},
};

constexpr zwlr_layer_surface_v1_listener layerListener{
    .configure =
        [](void* data, zwlr_layer_surface_v1*, std::uint32_t serial, std::uint32_t, std::uint32_t) {
            auto* const told = static_cast<Told*>(data);
            told->isConfigured = true;
            told->serial = serial;
        },
    .closed = [](void* told, zwlr_layer_surface_v1*) { static_cast<Told*>(told)->isClosed = true; },
};

} // namespace

OutputChoice::OutputChoice(EventQueue& events, const Globals& globals, wl_shm* shm)
    : events_(events)
    , shm_(shm)
    , compositor_(bindIfOffered<wl_compositor>(globals, wl_compositor_interface),
                  [](wl_compositor* it) { wl_compositor_destroy(it); })
    , layers_(bindIfOffered<zwlr_layer_shell_v1>(globals, zwlr_layer_shell_v1_interface),
              [](zwlr_layer_shell_v1* it) { zwlr_layer_shell_v1_destroy(it); }) {}

OutputChoice::~OutputChoice() = default;

const wl_output* OutputChoice::ask(QDeadlineTimer deadline) {
    const auto pixel = StoredFrame::of(WL_SHM_FORMAT_ARGB8888, 1, 1, 4);
    if (!compositor_ || !layers_ || !pixel) {
        return nullptr;
    }
    Told told;
    const std::unique_ptr<wl_surface, void (*)(wl_surface*)> surface(
        wl_compositor_create_surface(compositor_.get()), [](wl_surface* it) { wl_surface_destroy(it); });
    wl_surface_add_listener(surface.get(), &surfaceListener, &told);
    // An empty input region: the pointer passes through.
    wl_region* const nowhere = wl_compositor_create_region(compositor_.get());
    wl_surface_set_input_region(surface.get(), nowhere);
    wl_region_destroy(nowhere);
    const std::unique_ptr<zwlr_layer_surface_v1, void (*)(zwlr_layer_surface_v1*)> layer(
        zwlr_layer_shell_v1_get_layer_surface(layers_.get(), surface.get(), nullptr,
                                              ZWLR_LAYER_SHELL_V1_LAYER_BACKGROUND, "amberquill"),
        [](zwlr_layer_surface_v1* it) { zwlr_layer_surface_v1_destroy(it); });
    zwlr_layer_surface_v1_add_listener(layer.get(), &layerListener, &told);
    zwlr_layer_surface_v1_set_size(layer.get(), 1, 1);
    wl_surface_commit(surface.get());
    if (!events_.handleUntil([&told] { return told.isConfigured || told.isClosed; }, deadline) ||
        told.isClosed) {
        return nullptr;
    }
    const SharedFrame nothing(shm_, *pixel);
    if (nothing.buffer() == nullptr) {
        return nullptr;
    }
    zwlr_layer_surface_v1_ack_configure(layer.get(), told.serial);
    wl_surface_attach(surface.get(), nothing.buffer(), 0, 0);
    wl_surface_commit(surface.get());
    static_cast<void>(
        events_.handleUntil([&told] { return told.entered != nullptr || told.isClosed; }, deadline));
    return told.entered;
}

} // namespace amberquill::desktop
