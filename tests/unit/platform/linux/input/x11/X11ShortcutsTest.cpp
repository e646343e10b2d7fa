#include "platform/linux/input/x11/X11Shortcuts.h"

#include "platform/linux/x11/XcbReply.h"
#include "support/ManualQueue.h"
#include "support/TestXServer.h"

#include <array>
#include <gtest/gtest.h>

using namespace amberquill;
using namespace amberquill::desktop;
using namespace Qt::StringLiterals;

namespace {

constexpr KeyChord chord{Qt::Key_Space, Qt::ControlModifier | Qt::AltModifier};

class X11ShortcutsTest : public testing::Test {
protected:
    void SetUp() override { follow(shortcuts_, presses_); }

    static void follow(X11Shortcuts& shortcuts, QList<std::uint32_t>& presses) {
        shortcuts.setHandler([&presses](std::uint32_t id) { presses += id; });
    }

    // Presses keys and handles all events that follow.
    void type(const QStringList& arguments) {
        QProcess process;
        QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
        environment.insert(u"DISPLAY"_s, QString::fromUtf8(server_.display()));
        process.setProcessEnvironment(environment);
        process.start(u"xdotool"_s, arguments);
        EXPECT_TRUE(process.waitForFinished());
        EXPECT_EQ(process.exitCode(), 0);
        deliverAll();
    }

    // Returns the number of events of the chord.
    int deliverAll() {
        client_.sync();
        int taken = 0;
        while (const XcbReply<xcb_generic_event_t> event{xcb_poll_for_event(client_.get())}) {
            taken += shortcuts_.handle(*event) ? 1 : 0;
        }
        queue_.runPosted();
        client_.sync();
        return taken;
    }

    TestXServer server_;
    XClient client_{server_};
    ManualQueue queue_;
    X11Shortcuts shortcuts_{client_.get(), client_.screen().root, queue_};
    QList<std::uint32_t> presses_;
};

} // namespace

TEST_F(X11ShortcutsTest, EachPressIsDeliveredOnceWithItsTime) {
    std::optional<UserTime> time;
    shortcuts_.setHandler([&](std::uint32_t id) {
        presses_ += id;
        time = shortcuts_.origin().time;
    });
    shortcuts_.add(7, chord);
    type({u"key"_s, u"ctrl+alt+space"_s});
    EXPECT_EQ(presses_, QList<std::uint32_t>{7});
    ASSERT_TRUE(time);
    EXPECT_NE(*time, UserTime{});
    EXPECT_EQ(shortcuts_.origin(), PressOrigin()) << "over";
    type({u"key"_s, u"ctrl+alt+space"_s});
    EXPECT_EQ(presses_.size(), 2);
}

TEST_F(X11ShortcutsTest, LocksDoNotMatter) {
    shortcuts_.add(1, chord);
    type({u"key"_s, u"Caps_Lock"_s, u"ctrl+alt+space"_s});
    EXPECT_EQ(presses_.size(), 1);
    type({u"key"_s, u"Num_Lock"_s, u"ctrl+alt+space"_s});
    EXPECT_EQ(presses_.size(), 2);
    type({u"key"_s, u"Caps_Lock"_s, u"ctrl+alt+space"_s});
    EXPECT_EQ(presses_.size(), 3);
}

TEST_F(X11ShortcutsTest, OtherKeysAreNotTaken) {
    shortcuts_.add(1, chord);
    type({u"key"_s, u"space"_s, u"ctrl+space"_s, u"alt+space"_s, u"ctrl+alt+shift+space"_s, u"ctrl+alt+a"_s});
    EXPECT_TRUE(presses_.isEmpty());
}

TEST_F(X11ShortcutsTest, TwoShortcutsAreDistinguished) {
    shortcuts_.add(1, chord);
    shortcuts_.add(2, {Qt::Key_A, Qt::ControlModifier | Qt::AltModifier});
    type({u"key"_s, u"ctrl+alt+a"_s, u"ctrl+alt+space"_s});
    EXPECT_EQ(presses_, (QList<std::uint32_t>{2, 1}));
}

TEST_F(X11ShortcutsTest, PressesOfARemovedShortcutAreNotDelivered) {
    shortcuts_.add(1, chord);
    shortcuts_.remove(1);
    shortcuts_.remove(1);
    type({u"key"_s, u"ctrl+alt+space"_s});
    EXPECT_TRUE(presses_.isEmpty());
}

TEST_F(X11ShortcutsTest, ARefusedGrabIsSilentAndOthersKeepTheirPresses) {
    const XClient other(server_);
    X11Shortcuts first(other.get(), other.screen().root, queue_);
    first.add(1, chord);
    shortcuts_.add(1, chord);
    type({u"key"_s, u"ctrl+alt+space"_s});
    EXPECT_TRUE(presses_.isEmpty());
    QList<std::uint32_t> firstPresses;
    follow(first, firstPresses);
    other.sync();
    while (const XcbReply<xcb_generic_event_t> event{xcb_poll_for_event(other.get())}) {
        first.handle(*event);
    }
    queue_.runPosted();
    EXPECT_EQ(firstPresses.size(), 1);
    EXPECT_EQ(xcb_connection_has_error(client_.get()), 0);
}

TEST_F(X11ShortcutsTest, TheGrabFollowsTheKeyboardMapping) {
    shortcuts_.add(1, chord);
    // From now on the key of the letter j gives a space, and that of the space bar a letter.
    constexpr xcb_keycode_t letterKey = 44;
    constexpr xcb_keycode_t spaceBar = 65;
    for (const auto& [key, symbol] :
         {std::pair(letterKey, xcb_keysym_t{0x20}), std::pair(spaceBar, xcb_keysym_t{0x6a})}) {
        xcb_change_keyboard_mapping(client_.get(), 1, key, 1, &symbol);
    }
    deliverAll();
    type({u"key"_s, u"ctrl+alt+44"_s});
    EXPECT_EQ(presses_.size(), 1);
    type({u"key"_s, u"ctrl+alt+65"_s});
    EXPECT_EQ(presses_.size(), 1);
}

TEST_F(X11ShortcutsTest, AHeldKeyIsOnePress) {
    shortcuts_.add(1, chord);
    type({u"keydown"_s, u"ctrl+alt+space"_s});
    EXPECT_EQ(presses_.size(), 1);
    type({u"keydown"_s, u"space"_s});
    EXPECT_EQ(presses_.size(), 1);
    type({u"keyup"_s, u"ctrl+alt+space"_s});
    type({u"key"_s, u"ctrl+alt+space"_s});
    EXPECT_EQ(presses_.size(), 2);
}

TEST_F(X11ShortcutsTest, APressUnderAGrabOfOurOwnIsDeliveredOnce) {
    shortcuts_.add(1, chord);
    // A grab of the keyboard, like a menu's.
    const XcbReply<xcb_grab_keyboard_reply_t> grab(
        xcb_grab_keyboard_reply(client_.get(),
                                xcb_grab_keyboard(client_.get(), 1, client_.screen().root, XCB_CURRENT_TIME,
                                                  XCB_GRAB_MODE_ASYNC, XCB_GRAB_MODE_ASYNC),
                                nullptr));
    ASSERT_EQ(grab->status, XCB_GRAB_STATUS_SUCCESS);
    type({u"key"_s, u"ctrl+alt+space"_s});
    EXPECT_EQ(presses_.size(), 1);
}

TEST_F(X11ShortcutsTest, AShortcutRemovedDuringDeliveryIsNotDelivered) {
    shortcuts_.add(1, chord);
    xcb_key_press_event_t event = {};
    event.response_type = XCB_KEY_PRESS;
    event.detail = 65;
    event.state = XCB_MOD_MASK_CONTROL | XCB_MOD_MASK_1;
    EXPECT_TRUE(shortcuts_.handle(reinterpret_cast<const xcb_generic_event_t&>(event)));
    EXPECT_TRUE(presses_.isEmpty()) << "what came before it is handled first";
    shortcuts_.remove(1);
    queue_.runPosted();
    EXPECT_TRUE(presses_.isEmpty());
}

TEST_F(X11ShortcutsTest, SyntheticEventsAreIgnored) {
    shortcuts_.add(1, chord);
    xcb_key_press_event_t event = {};
    event.response_type = 0x80 | XCB_KEY_PRESS;
    event.detail = 65;
    event.state = XCB_MOD_MASK_CONTROL | XCB_MOD_MASK_1;
    EXPECT_FALSE(shortcuts_.handle(reinterpret_cast<const xcb_generic_event_t&>(event)));
    queue_.runPosted();
    EXPECT_TRUE(presses_.isEmpty());
}
