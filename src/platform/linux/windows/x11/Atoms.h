#pragma once

#include "platform/linux/x11/XcbReply.h"

namespace amberquill::desktop {

// Atoms of the Extended Window Manager Hints, and KDE's (with Kde in the name).
enum class AtomName {
    SupportingWmCheck,
    State,
    StateAbove,
    StateFullScreen,
    StateSkipPager,
    StateSkipTaskbar,
    StateSticky,
    Desktop,
    BypassCompositor,
    KdeSkipCloseAnimation,
    ActiveWindow,
    KdeBlurBehindRegion,
};

// The atoms on one X server.
class Atoms {
public:
    // One round trip for all atoms.
    explicit Atoms(xcb_connection_t* connection)
        : values_(internAtoms(connection, names_)) {}

    [[nodiscard]] xcb_atom_t operator[](AtomName name) const {
        return values_[static_cast<std::size_t>(name)];
    }

private:
    // In the order of AtomName.
    static constexpr std::array<std::string_view, 12> names_{
        "_NET_SUPPORTING_WM_CHECK",  "_NET_WM_STATE",
        "_NET_WM_STATE_ABOVE",       "_NET_WM_STATE_FULLSCREEN",
        "_NET_WM_STATE_SKIP_PAGER",  "_NET_WM_STATE_SKIP_TASKBAR",
        "_NET_WM_STATE_STICKY",      "_NET_WM_DESKTOP",
        "_NET_WM_BYPASS_COMPOSITOR", "_KDE_NET_WM_SKIP_CLOSE_ANIMATION",
        "_NET_ACTIVE_WINDOW",        "_KDE_NET_WM_BLUR_BEHIND_REGION",
    };

    std::array<xcb_atom_t, names_.size()> values_;
};

} // namespace amberquill::desktop
