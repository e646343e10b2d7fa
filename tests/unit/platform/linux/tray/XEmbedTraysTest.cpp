#include "platform/linux/tray/XEmbedTrays.h"

#include "support/TestXServer.h"
#include "support/WaitUntil.h"

#include <cstdlib>
#include <gtest/gtest.h>
#include <string_view>

using namespace amberquill;
using namespace amberquill::desktop;

namespace {

xcb_atom_t atom(const XClient& client, std::string_view name) {
    auto* reply = xcb_intern_atom_reply(
        client.get(), xcb_intern_atom(client.get(), 0, static_cast<std::uint16_t>(name.size()), name.data()),
        nullptr);
    const xcb_atom_t result = reply->atom;
    std::free(reply); // NOLINT(cppcoreguidelines-no-malloc)
    return result;
}

// A tray: it embeds windows of other programs.
class Tray {
public:
    explicit Tray(const TestXServer& server)
        : client_(server)
        , window_(xcb_generate_id(client_.get())) {
        const xcb_screen_t& screen = client_.screen();
        xcb_create_window(client_.get(), XCB_COPY_FROM_PARENT, window_, screen.root, 0, 0, 1, 1, 0,
                          XCB_WINDOW_CLASS_INPUT_ONLY, screen.root_visual, 0, nullptr);
    }

    void take(std::string_view selection) {
        xcb_set_selection_owner(client_.get(), window_, atom(client_, selection), XCB_CURRENT_TIME);
        client_.sync();
    }

    // Announces the selection's owner with a client message to the root window.
    void tell(std::string_view selection, std::uint8_t format = 32) {
        xcb_client_message_event_t event = {};
        event.response_type = XCB_CLIENT_MESSAGE;
        event.format = format;
        event.window = client_.screen().root;
        event.type = atom(client_, "MANAGER");
        event.data.data32[1] = atom(client_, selection);
        event.data.data32[2] = window_;
        xcb_send_event(client_.get(), 0, event.window, XCB_EVENT_MASK_STRUCTURE_NOTIFY,
                       reinterpret_cast<const char*>(&event));
        client_.sync();
    }

private:
    XClient client_;
    xcb_window_t window_;
};

class XEmbedTraysTest : public testing::Test {
protected:
    void SetUp() override {
        const std::uint32_t mask = XCB_EVENT_MASK_STRUCTURE_NOTIFY;
        xcb_change_window_attributes(client_.get(), client_.screen().root, XCB_CW_EVENT_MASK, &mask);
        client_.sync();
    }

    // Passes all received events on, like Qt.
    void deliver() {
        client_.sync();
        while (auto* event = xcb_poll_for_event(client_.get())) {
            qintptr result = 0;
            EXPECT_FALSE(trays_.nativeEventFilter("xcb_generic_event_t", event, &result));
            std::free(event); // NOLINT(cppcoreguidelines-no-malloc)
        }
    }

    TestXServer server_;
    XClient client_{server_};
    int told_ = 0;
    XEmbedTrays trays_{client_.get(), [this] { ++told_; }};
};

} // namespace

TEST_F(XEmbedTraysTest, ATrayExistsWhileItsSelectionHasAnOwner) {
    EXPECT_FALSE(trays_.isThere());
    {
        Tray tray(server_);
        tray.take("_NET_SYSTEM_TRAY_S0");
        EXPECT_TRUE(trays_.isThere());
    }
    EXPECT_TRUE(waitUntil([this] { return !trays_.isThere(); }));
}

TEST_F(XEmbedTraysTest, TheOwnerOfAnotherSelectionIsNotATray) {
    Tray tray(server_);
    tray.take("_NET_WM_CM_S0");
    EXPECT_FALSE(trays_.isThere());
}

TEST_F(XEmbedTraysTest, ANewTrayIsReported) {
    Tray tray(server_);
    tray.take("_NET_SYSTEM_TRAY_S0");
    tray.tell("_NET_SYSTEM_TRAY_S0");
    deliver();
    EXPECT_EQ(told_, 1);
}

TEST_F(XEmbedTraysTest, OtherMessagesAreIgnored) {
    Tray other(server_);
    other.tell("_NET_WM_CM_S0");
    other.tell("_NET_SYSTEM_TRAY_S0", 8);
    deliver();
    EXPECT_EQ(told_, 0);
    qintptr result = 0;
    EXPECT_FALSE(trays_.nativeEventFilter("something else", nullptr, &result));
    EXPECT_EQ(told_, 0);
}
