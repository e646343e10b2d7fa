#pragma once

#include "platform/linux/wayland/EventQueue.h"

#include <cstdint>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

struct wl_interface;
struct wl_registry;

namespace amberquill::desktop {

// The compositor's globals, by the registry events that the queue has handled.
class Globals {
public:
    struct Global {
        std::uint32_t name;
        std::uint32_t version;
        std::string interface;
    };

    // `queue` outlives this.
    explicit Globals(const EventQueue& queue);
    Globals(const Globals&) = delete;
    Globals& operator=(const Globals&) = delete;
    ~Globals() = default;

    [[nodiscard]] const std::vector<Global>& all() const { return all_; }

    // The first global of an interface; null: none is offered.
    [[nodiscard]] const Global* find(std::string_view interface) const;
    [[nodiscard]] bool holds(std::uint32_t name) const;

    // Binds the global at the version `newest` or lower. The result has the interface's type.
    [[nodiscard]] void* bind(const Global& global, const wl_interface& interface, std::uint32_t newest) const;

private:
    std::unique_ptr<wl_registry, void (*)(wl_registry*)> registry_;
    std::vector<Global> all_;
};

} // namespace amberquill::desktop
