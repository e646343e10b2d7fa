#include "platform/linux/x11/Atoms.h"

#include "platform/linux/x11/XcbReply.h"

#include <string_view>

namespace amberquill::desktop {
namespace {

// In the order of AtomName.
constexpr std::array<std::string_view, 12> names{
    "_NET_SUPPORTING_WM_CHECK",  "_NET_WM_STATE",
    "_NET_WM_STATE_ABOVE",       "_NET_WM_STATE_FULLSCREEN",
    "_NET_WM_STATE_SKIP_PAGER",  "_NET_WM_STATE_SKIP_TASKBAR",
    "_NET_WM_STATE_STICKY",      "_NET_WM_DESKTOP",
    "_NET_WM_BYPASS_COMPOSITOR", "_KDE_NET_WM_SKIP_CLOSE_ANIMATION",
    "_NET_ACTIVE_WINDOW",        "_KDE_NET_WM_BLUR_BEHIND_REGION",
};

} // namespace

Atoms::Atoms(xcb_connection_t* connection) {
    static_assert(names.size() == count_);
    std::array<xcb_intern_atom_cookie_t, count_> cookies{};
    for (std::size_t i = 0; i < count_; ++i) {
        cookies[i] = xcb_intern_atom(connection, 0, static_cast<uint16_t>(names[i].size()), names[i].data());
    }
    for (std::size_t i = 0; i < count_; ++i) {
        const XcbReply<xcb_intern_atom_reply_t> reply(xcb_intern_atom_reply(connection, cookies[i], nullptr));
        values_[i] = reply ? reply->atom : xcb_atom_t{XCB_ATOM_NONE};
    }
}

} // namespace amberquill::desktop
