#pragma once

#include <array>
#include <xcb/xcb.h>

namespace amberquill::desktop {

// The names of properties and states that the launcher's window speaks of, by the Extended Window Manager
// Hints unless the name says otherwise.
enum class AtomName {
    supportingWmCheck,
    state,
    stateAbove,
    stateFullScreen,
    stateSkipPager,
    stateSkipTaskbar,
    stateSticky,
    desktop,
    bypassCompositor,
    kdeSkipCloseAnimation,
    activeWindow,
    kdeBlurBehindRegion,
};

// Their numbers on one X server.
class Atoms {
public:
    // One round trip for all.
    explicit Atoms(xcb_connection_t* connection);

    [[nodiscard]] xcb_atom_t operator[](AtomName name) const {
        return values_[static_cast<std::size_t>(name)];
    }

private:
    static constexpr std::size_t count_ = 12;
    std::array<xcb_atom_t, count_> values_{};
};

} // namespace amberquill::desktop
