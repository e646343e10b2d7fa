#include "platform/linux/windows/wayland/blur/BlurBehind.h"

#include "blur-client-protocol.h"
#include "ext-background-effect-v1-client-protocol.h"

#include <limits>
#include <wayland-client.h>

namespace amberquill::desktop {

void BlurBehind::Delete::operator()(ext_background_effect_manager_v1* manager) const {
    ext_background_effect_manager_v1_destroy(manager);
}

void BlurBehind::Delete::operator()(ext_background_effect_surface_v1* effect) const {
    ext_background_effect_surface_v1_destroy(effect);
}

void BlurBehind::Delete::operator()(org_kde_kwin_blur_manager* manager) const {
    org_kde_kwin_blur_manager_destroy(manager);
}

void BlurBehind::Delete::operator()(org_kde_kwin_blur* effect) const {
    org_kde_kwin_blur_release(effect);
}

void BlurBehind::Delete::operator()(wl_compositor* compositor) const {
    wl_compositor_destroy(compositor);
}

void BlurBehind::follow() {
    if (general_ && !globals_.holds(generalName_)) {
        general_.reset();
        hasCapabilities_ = false;
        generalBlurs_ = false;
    }
    if (kwins_ && !globals_.holds(kwinsName_)) {
        kwins_.reset();
    }
    if (const auto* offered = globals_.find(ext_background_effect_manager_v1_interface.name);
        !general_ && offered != nullptr) {
        generalName_ = offered->name;
        general_.reset(static_cast<ext_background_effect_manager_v1*>(
            globals_.bind(*offered, ext_background_effect_manager_v1_interface, 1)));
        static constexpr ext_background_effect_manager_v1_listener listener{
            .capabilities = [](void* self, ext_background_effect_manager_v1*, std::uint32_t flags) {
                static_cast<BlurBehind*>(self)->hasCapabilities_ = true;
                static_cast<BlurBehind*>(self)->generalBlurs_ =
                    (flags & EXT_BACKGROUND_EFFECT_MANAGER_V1_CAPABILITY_BLUR) != 0;
            }};
        ext_background_effect_manager_v1_add_listener(general_.get(), &listener, this);
    }
    if (const auto* offered = globals_.find(org_kde_kwin_blur_manager_interface.name);
        !kwins_ && offered != nullptr) {
        kwinsName_ = offered->name;
        kwins_.reset(static_cast<org_kde_kwin_blur_manager*>(
            globals_.bind(*offered, org_kde_kwin_blur_manager_interface, 1)));
    }
    if (const auto* offered = globals_.find(wl_compositor_interface.name);
        general_ && !compositor_ && offered != nullptr) {
        compositor_.reset(static_cast<wl_compositor*>(globals_.bind(*offered, wl_compositor_interface, 1)));
    }
}

bool BlurBehind::isOffered() const {
    return (general_ && generalBlurs_ && compositor_) || kwins_;
}

void BlurBehind::cover(wl_surface* surface) {
    // First, because a surface can have only one effect object.
    generalEffect_.reset();
    kwinsEffect_.reset();
    if (surface == nullptr) {
        return;
    }
    if (general_ && generalBlurs_ && compositor_) {
        generalEffect_.reset(ext_background_effect_manager_v1_get_background_effect(general_.get(), surface));
        // Larger than any surface: parts beyond the edges are ignored.
        constexpr auto endless = std::numeric_limits<std::int32_t>::max();
        wl_region* const everywhere = wl_compositor_create_region(compositor_.get());
        wl_region_add(everywhere, 0, 0, endless, endless);
        ext_background_effect_surface_v1_set_blur_region(generalEffect_.get(), everywhere);
        wl_region_destroy(everywhere);
    } else if (kwins_) {
        kwinsEffect_.reset(org_kde_kwin_blur_manager_create(kwins_.get(), surface));
        org_kde_kwin_blur_set_region(kwinsEffect_.get(), nullptr); // null: the whole surface
        org_kde_kwin_blur_commit(kwinsEffect_.get());
    }
}

} // namespace amberquill::desktop
