#include "platform/linux/tray/XEmbedTrays.h"

#include "platform/linux/x11/XcbReply.h"

#include <QByteArray>
#include <string_view>
#include <utility>

namespace amberquill::desktop {
namespace {

xcb_atom_t atom(xcb_connection_t* connection, std::string_view name) {
    const XcbReply<xcb_intern_atom_reply_t> reply(xcb_intern_atom_reply(
        connection, xcb_intern_atom(connection, 0, static_cast<std::uint16_t>(name.size()), name.data()),
        nullptr));
    return reply ? reply->atom : xcb_atom_t{XCB_ATOM_NONE};
}

} // namespace

XEmbedTrays::XEmbedTrays(xcb_connection_t* connection, std::function<void()> came)
    : connection_(connection)
    , came_(std::move(came))
    , selection_(atom(connection, "_NET_SYSTEM_TRAY_S0"))
    , manager_(atom(connection, "MANAGER")) {}

bool XEmbedTrays::isThere() const {
    const XcbReply<xcb_get_selection_owner_reply_t> owner(xcb_get_selection_owner_reply(
        connection_, xcb_get_selection_owner(connection_, selection_), nullptr));
    return owner && owner->owner != XCB_WINDOW_NONE;
}

// A tray tells the root window's clients of itself; Qt is one of them.
bool XEmbedTrays::nativeEventFilter(const QByteArray& eventType, void* message, qintptr* /*result*/) {
    if (eventType != "xcb_generic_event_t") {
        return false;
    }
    constexpr std::uint8_t ofAnotherProgram = 0x80;
    const auto& event = *static_cast<const xcb_generic_event_t*>(message);
    if ((event.response_type & ~ofAnotherProgram) == XCB_CLIENT_MESSAGE) {
        const auto& told = reinterpret_cast<const xcb_client_message_event_t&>(event);
        if (told.format == 32 && told.type == manager_ && told.data.data32[1] == selection_) {
            came_();
        }
    }
    return false;
}

} // namespace amberquill::desktop
