#include "platform/linux/windows/x11/FocusFilter.h"

#include <gtest/gtest.h>

using namespace amberquill::desktop;

namespace {

constexpr xcb_atom_t activeWindow = 300;

bool seemsToMove(std::uint8_t type, std::uint8_t mode) {
    xcb_focus_in_event_t event = {};
    event.response_type = type;
    event.mode = mode;
    return seemsToMoveFocus(reinterpret_cast<const xcb_generic_event_t&>(event), activeWindow);
}

bool messageSeemsToMove(xcb_atom_t type) {
    xcb_client_message_event_t event = {};
    event.response_type = 0x80 | XCB_CLIENT_MESSAGE;
    event.format = 32;
    event.type = type;
    return seemsToMoveFocus(reinterpret_cast<const xcb_generic_event_t&>(event), activeWindow);
}

} // namespace

TEST(FocusFilter, FocusEventsOfAKeyboardGrabAreIgnored) {
    EXPECT_TRUE(seemsToMove(XCB_FOCUS_OUT, XCB_NOTIFY_MODE_GRAB));
    EXPECT_TRUE(seemsToMove(XCB_FOCUS_IN, XCB_NOTIFY_MODE_UNGRAB));
}

TEST(FocusFilter, AFocusChangeIsSeenAlsoDuringAGrab) {
    for (const std::uint8_t mode : {XCB_NOTIFY_MODE_NORMAL, XCB_NOTIFY_MODE_WHILE_GRABBED}) {
        EXPECT_FALSE(seemsToMove(XCB_FOCUS_OUT, mode));
        EXPECT_FALSE(seemsToMove(XCB_FOCUS_IN, mode));
    }
}

TEST(FocusFilter, ARequestForTheFocusIsNotTheFocus) {
    EXPECT_TRUE(messageSeemsToMove(activeWindow));
    EXPECT_FALSE(messageSeemsToMove(activeWindow + 1));
}

TEST(FocusFilter, OtherEventsPass) {
    EXPECT_FALSE(seemsToMove(XCB_KEY_PRESS, XCB_NOTIFY_MODE_GRAB));
    EXPECT_FALSE(seemsToMove(XCB_ENTER_NOTIFY, XCB_NOTIFY_MODE_UNGRAB));
}
