#pragma once

#include "platform/linux/wayland/Globals.h"

#include <cstdint>
#include <memory>

struct ext_background_effect_manager_v1;
struct ext_background_effect_surface_v1;
struct org_kde_kwin_blur;
struct org_kde_kwin_blur_manager;
struct wl_compositor;
struct wl_surface;

namespace amberquill::desktop {

// The compositor's blur behind a surface, by the protocol ext-background-effect-v1 or org_kde_kwin_blur.
// Main thread only; destroyed before the connection is closed.
class BlurBehind {
public:
    // `globals` outlives this object.
    explicit BlurBehind(const Globals& globals)
        : globals_(globals) {}
    BlurBehind(const BlurBehind&) = delete;
    BlurBehind& operator=(const BlurBehind&) = delete;
    ~BlurBehind() = default;

    // Binds the protocol that is offered now and releases one that is no longer offered. A manager may send
    // its capabilities later, by an event.
    void follow();

    // Whether cover() would blur now.
    [[nodiscard]] bool isOffered() const;

    // Whether the bound manager has not sent its capabilities yet.
    [[nodiscard]] bool isUndecided() const { return general_ && !hasCapabilities_; }

    // Blurs the content behind the whole surface from its next commit on. Releases an earlier surface's
    // effect.
    void cover(wl_surface* surface);

private:
    struct Delete {
        void operator()(ext_background_effect_manager_v1* manager) const;
        void operator()(ext_background_effect_surface_v1* effect) const;
        void operator()(org_kde_kwin_blur_manager* manager) const;
        void operator()(org_kde_kwin_blur* effect) const;
        void operator()(wl_compositor* compositor) const;
    };

    const Globals& globals_;
    std::unique_ptr<wl_compositor, Delete> compositor_; // makes regions
    std::unique_ptr<ext_background_effect_manager_v1, Delete> general_;
    std::unique_ptr<org_kde_kwin_blur_manager, Delete> kwins_;
    std::uint32_t generalName_ = 0;
    std::uint32_t kwinsName_ = 0;
    bool hasCapabilities_ = false;
    bool generalBlurs_ = false;
    std::unique_ptr<ext_background_effect_surface_v1, Delete> generalEffect_;
    std::unique_ptr<org_kde_kwin_blur, Delete> kwinsEffect_;
};

} // namespace amberquill::desktop
