#include "platform/linux/windows/x11/FocusFilter.h"

#include <QCoreApplication>

namespace amberquill::desktop {

bool seemsToMoveFocus(const xcb_generic_event_t& event, xcb_atom_t activeWindow) {
    constexpr unsigned sentByProgram = 0x80;
    switch (event.response_type & ~sentByProgram) {
    case XCB_FOCUS_IN:
    case XCB_FOCUS_OUT: {
        const std::uint8_t mode = reinterpret_cast<const xcb_focus_in_event_t&>(event).mode;
        return mode == XCB_NOTIFY_MODE_GRAB || mode == XCB_NOTIFY_MODE_UNGRAB;
    }
    case XCB_CLIENT_MESSAGE:
        return reinterpret_cast<const xcb_client_message_event_t&>(event).type == activeWindow;
    default:
        return false;
    }
}

FocusFilter::FocusFilter(xcb_atom_t activeWindow)
    : activeWindow_(activeWindow) {
    // The destructor of QAbstractNativeEventFilter removes it.
    QCoreApplication::instance()->installNativeEventFilter(this);
}

bool FocusFilter::nativeEventFilter(const QByteArray& eventType, void* message, qintptr* /*result*/) {
    return eventType == "xcb_generic_event_t" &&
           seemsToMoveFocus(*static_cast<const xcb_generic_event_t*>(message), activeWindow_);
}

} // namespace amberquill::desktop
