#include "platform/linux/activation/x11/X11StartupNotifications.h"

#include "platform/linux/activation/x11/StartupMessage.h"
#include "platform/linux/x11/XcbReply.h"

#include <algorithm>
#include <string_view>

namespace amberquill::desktop {

namespace {

xcb_window_t rootWindow(xcb_connection_t* connection, int screen) {
    auto roots = xcb_setup_roots_iterator(xcb_get_setup(connection));
    for (; screen > 0 && roots.rem > 1; --screen) {
        xcb_screen_next(&roots);
    }
    return roots.data->root;
}

} // namespace

X11StartupNotifications::X11StartupNotifications(xcb_connection_t* connection, int screen)
    : connection_(connection)
    , screen_(screen) {}

void X11StartupNotifications::begin(const StartupNotice& notice) {
    broadcast(startupBeginning(notice, screen_));
}

void X11StartupNotifications::cancel(const QString& id) {
    broadcast(startupEnd(id));
}

bool X11StartupNotifications::learnAtoms() {
    constexpr std::array<std::string_view, 2> names = {"_NET_STARTUP_INFO_BEGIN", "_NET_STARTUP_INFO"};
    if (atoms_.back() != XCB_ATOM_NONE) {
        return true;
    }
    std::array<xcb_intern_atom_cookie_t, 2> asked{};
    std::transform(names.begin(), names.end(), asked.begin(), [this](std::string_view name) {
        return xcb_intern_atom(connection_, 0, static_cast<std::uint16_t>(name.size()), name.data());
    });
    std::transform(asked.begin(), asked.end(), atoms_.begin(), [this](xcb_intern_atom_cookie_t cookie) {
        const XcbReply<xcb_intern_atom_reply_t> reply(xcb_intern_atom_reply(connection_, cookie, nullptr));
        return reply ? reply->atom : xcb_atom_t(XCB_ATOM_NONE);
    });
    return atoms_.front() != XCB_ATOM_NONE && atoms_.back() != XCB_ATOM_NONE;
}

void X11StartupNotifications::broadcast(const QByteArray& message) {
    if (!learnAtoms()) {
        return;
    }
    const xcb_window_t root = rootWindow(connection_, screen_);
    // Listeners put a message together from the events that name the same window.
    const xcb_window_t sender = xcb_generate_id(connection_);
    const std::uint32_t unmanaged = 1;
    xcb_create_window(connection_, 0, sender, root, -1, -1, 1, 1, 0, XCB_WINDOW_CLASS_INPUT_ONLY,
                      XCB_COPY_FROM_PARENT, XCB_CW_OVERRIDE_REDIRECT, &unmanaged);
    xcb_client_message_event_t event{};
    event.response_type = XCB_CLIENT_MESSAGE;
    event.format = 8;
    event.window = sender;
    event.type = atoms_.front();
    for (const StartupChunk& chunk : startupChunks(message)) {
        std::copy(chunk.begin(), chunk.end(), std::begin(event.data.data8));
        xcb_send_event(connection_, 0, root, XCB_EVENT_MASK_PROPERTY_CHANGE,
                       reinterpret_cast<const char*>(&event));
        event.type = atoms_.back();
    }
    xcb_destroy_window(connection_, sender);
    xcb_flush(connection_);
}

} // namespace amberquill::desktop
