// On a real X server, which this program starts.
#include "platform/linux/activation/Activation.h"
#include "platform/linux/activation/x11/StartupMessage.h"
#include "platform/linux/x11/XcbReply.h"
#include "support/ManualQueue.h"
#include "support/WaitUntil.h"

#include <QGuiApplication>
#include <QProcess>
#include <QRasterWindow>
#include <gtest/gtest.h>
#include <xcb/xcb.h>

using namespace amberquill;
using namespace amberquill::desktop;
using namespace Qt::StringLiterals;

namespace {

// Another client of the server, like a window manager.
class OtherClient {
public:
    OtherClient()
        : connection_(xcb_connect(nullptr, nullptr))
        , root_(xcb_setup_roots_iterator(xcb_get_setup(connection_)).data->root) {
        const std::uint32_t mask = XCB_EVENT_MASK_PROPERTY_CHANGE;
        xcb_change_window_attributes(connection_, root_, XCB_CW_EVENT_MASK, &mask);
        sync();
    }
    OtherClient(const OtherClient&) = delete;
    OtherClient& operator=(const OtherClient&) = delete;
    ~OtherClient() { xcb_disconnect(connection_); }

    // The client messages that the root window received, joined by sender. The name of a message's type
    // stands before it where the type changes.
    QByteArrayList broadcasts() {
        sync();
        while (const XcbReply<xcb_generic_event_t> event{xcb_poll_for_event(connection_)}) {
            if ((event->response_type & 0x7f) == XCB_CLIENT_MESSAGE) {
                take(*reinterpret_cast<const xcb_client_message_event_t*>(event.get()));
            }
        }
        return messages_;
    }

    void pressKey(xcb_window_t window, quint32 time) {
        xcb_key_press_event_t event{};
        event.response_type = XCB_KEY_PRESS;
        event.detail = 38;
        event.time = time;
        event.root = root_;
        event.event = window;
        event.same_screen = 1;
        xcb_send_event(connection_, 0, window, XCB_EVENT_MASK_KEY_PRESS,
                       reinterpret_cast<const char*>(&event));
        sync();
    }

private:
    void sync() {
        const XcbReply<xcb_get_input_focus_reply_t> reply(
            xcb_get_input_focus_reply(connection_, xcb_get_input_focus(connection_), nullptr));
    }

    QByteArray nameOf(xcb_atom_t atom) {
        const XcbReply<xcb_get_atom_name_reply_t> reply(
            xcb_get_atom_name_reply(connection_, xcb_get_atom_name(connection_, atom), nullptr));
        return {xcb_get_atom_name_name(reply.get()), xcb_get_atom_name_name_length(reply.get())};
    }

    void take(const xcb_client_message_event_t& event) {
        const QByteArray type = nameOf(event.type);
        if (type == "_NET_STARTUP_INFO_BEGIN") {
            messages_ += QByteArray();
            sender_ = event.window;
        }
        EXPECT_TRUE(type == "_NET_STARTUP_INFO_BEGIN" || type == "_NET_STARTUP_INFO") << type.toStdString();
        EXPECT_EQ(event.window, sender_);
        EXPECT_EQ(event.format, 8);
        const QByteArray part(reinterpret_cast<const char*>(event.data.data8), 20);
        messages_.back() += part.left(part.indexOf('\0') < 0 ? 20 : part.indexOf('\0'));
    }

    xcb_connection_t* connection_;
    xcb_window_t root_;
    xcb_window_t sender_ = 0;
    QByteArrayList messages_;
};

// The number at the end of the id, read as window managers do.
quint32 timeOf(const QString& id) {
    return id.section(u"_TIME"_s, -1).toUInt();
}

} // namespace

TEST(X11Activation, AStartIsBroadcastToTheRootWindow) {
    OtherClient other;
    const auto notifications = makeStartupNotifications();
    StartupNotice notice;
    notice.id = u"amberquill/calc/1-1-box_TIME1"_s;
    notice.name = u"The Calculator of Everything"_s;
    notifications->begin(notice);
    notifications->cancel(notice.id);
    EXPECT_TRUE(waitUntil([&] { return other.broadcasts().size() == 2; }));
    EXPECT_EQ(other.broadcasts(), QByteArrayList({startupBeginning(notice, 0), startupEnd(notice.id)}));
}

TEST(X11Activation, ATokenHasTheTimeOfTheLastKeyPress) {
    OtherClient other;
    ManualQueue queue;
    const auto tokens = makeActivationTokens(queue);
    QRasterWindow window;
    window.show();
    ASSERT_TRUE(waitUntil([&] { return window.isExposed(); }));
    QStringList given;
    const auto ask = [&] {
        tokens->request(window, u"/a/calc.desktop"_s, [&](const QString& token) { given += token; });
        return given.back();
    };
    constexpr quint32 later = 3'000'000'000; // far from the server's clock
    other.pressKey(static_cast<xcb_window_t>(window.winId()), later);
    EXPECT_TRUE(waitUntil([&] { return timeOf(ask()) == later; })) << given.back().toStdString();
    EXPECT_TRUE(given.back().startsWith(u"amberquill/calc.desktop/"_s));
    const QString before = given.back();
    EXPECT_NE(ask(), before) << "no two starts share an id";
    EXPECT_EQ(queue.waiting(), 0U);
}

int main(int argc, char** argv) {
    testing::InitGoogleTest(&argc, argv);
    if (GTEST_FLAG_GET(list_tests)) {
        return RUN_ALL_TESTS();
    }
    QProcess server;
    server.start(u"Xvfb"_s,
                 {u"-displayfd"_s, u"1"_s, u"-screen"_s, u"0"_s, u"640x480x24"_s, u"-nolisten"_s, u"tcp"_s});
    if (!server.waitForReadyRead(20'000)) {
        return 1;
    }
    qputenv("DISPLAY", ':' + server.readLine().trimmed());
    qputenv("QT_QPA_PLATFORM", "xcb");
    qputenv("DBUS_SESSION_BUS_ADDRESS", "unix:path=/nowhere/at/all"); // no bus is to be started
    int result = 1;
    {
        QGuiApplication application(argc, argv);
        result = RUN_ALL_TESTS();
    }
    server.terminate();
    server.waitForFinished();
    return result;
}
