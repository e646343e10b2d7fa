#include "platform/linux/windows/x11/BlurRegion.h"

#include "platform/linux/x11/XcbReply.h"

#include <algorithm>
#include <array>

namespace amberquill::desktop {

bool understandsBlurRegion(xcb_connection_t* connection, xcb_window_t root, xcb_atom_t property) {
    const XcbReply<xcb_list_properties_reply_t> listed(
        xcb_list_properties_reply(connection, xcb_list_properties(connection, root), nullptr));
    if (!listed || property == XCB_ATOM_NONE) {
        return false;
    }
    const auto* const first = xcb_list_properties_atoms(listed.get());
    const auto* const end = first + xcb_list_properties_atoms_length(listed.get());
    return std::find(first, end, property) != end;
}

void setBlurRegion(xcb_connection_t* connection, xcb_window_t window, xcb_atom_t property,
                   const QSize& pixels) {
    const std::array<std::uint32_t, 4> all{0, 0, static_cast<std::uint32_t>(pixels.width()),
                                           static_cast<std::uint32_t>(pixels.height())};
    xcb_change_property(connection, XCB_PROP_MODE_REPLACE, window, property, XCB_ATOM_CARDINAL, 32,
                        all.size(), all.data());
}

} // namespace amberquill::desktop
