#include "platform/linux/wayland/Globals.h"

#include <algorithm>
#include <wayland-client.h>

namespace amberquill::desktop {

namespace {

// More globals than any compositor has; further ones are ignored.
constexpr std::size_t most = 1024;

} // namespace

Globals::Globals(const EventQueue& queue)
    : registry_(queue.registry()) {
    static constexpr wl_registry_listener listener{
        .global =
            [](void* self, wl_registry*, std::uint32_t name, const char* interface, std::uint32_t version) {
                if (auto& all = static_cast<Globals*>(self)->all_; all.size() < most) {
                    all.push_back({name, version, interface});
                }
            },
        .global_remove =
            [](void* self, wl_registry*, std::uint32_t name) {
                std::erase_if(static_cast<Globals*>(self)->all_,
                              [name](const Global& global) { return global.name == name; });
            },
    };
    wl_registry_add_listener(registry_.get(), &listener, this);
}

const Globals::Global* Globals::find(std::string_view interface) const {
    const auto found = std::find_if(all_.begin(), all_.end(), [interface](const Global& global) {
        return global.interface == interface;
    });
    return found != all_.end() ? &*found : nullptr;
}

bool Globals::holds(std::uint32_t name) const {
    return std::any_of(all_.begin(), all_.end(),
                       [name](const Global& global) { return global.name == name; });
}

void* Globals::bind(const Global& global, const wl_interface& interface, std::uint32_t newest) const {
    return wl_registry_bind(registry_.get(), global.name, &interface, std::min(global.version, newest));
}

} // namespace amberquill::desktop
