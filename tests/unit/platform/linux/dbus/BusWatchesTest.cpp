#include "platform/linux/dbus/BusWatches.h"

#include "support/PrivateBus.h"
#include "support/WaitUntil.h"

#include <gtest/gtest.h>

using namespace amberquill;
using namespace amberquill::desktop;
using namespace std::chrono_literals;

namespace {

constexpr const char* floodInterface = "org.example.Flood";

DBusHandlerResult countFlood(DBusConnection* /*connection*/, DBusMessage* message, void* count) {
    *static_cast<int*>(count) += dbus_message_has_interface(message, floodInterface) != FALSE ? 1 : 0;
    return DBUS_HANDLER_RESULT_NOT_YET_HANDLED;
}

} // namespace

TEST(BusWatches, MessagesThatArrivedBeforeAreHandedOutInSeveralTurns) {
    constexpr int sent = 500;
    const PrivateBus bus;
    const BusConnection receiver = connectToBus(bus.address().toUtf8(), 20s);
    const BusConnection sender = connectToBus(bus.address().toUtf8(), 20s);
    ASSERT_TRUE(receiver && sender);
    for (int i = 0; i < sent; ++i) {
        const BusMessage signal(dbus_message_new_signal("/", floodInterface, "Drop"));
        dbus_message_set_destination(signal.get(), dbus_bus_get_unique_name(receiver.get()));
        dbus_connection_send(sender.get(), signal.get(), nullptr);
    }
    catchUp(*sender, 20s);
    catchUp(*receiver, 20s);

    int received = 0;
    dbus_connection_add_filter(receiver.get(), countFlood, &received, nullptr);
    {
        BusWatches watches(*receiver);
        watches.dispatch();
        EXPECT_GT(received, 0);
        EXPECT_LT(received, sent) << "the event loop waits for all of them";
        EXPECT_TRUE(waitUntil([&received] { return received == sent; })) << received;
    }
    dbus_connection_remove_filter(receiver.get(), countFlood, &received);
}
