// platform/linux/dbus/: what several rooms need of D-Bus. Two libraries speak to the bus: libdbus before Qt
// exists and where a bounded wait is needed (the single instance), Qt's QtDBus elsewhere (portals, trays,
// systemd).
//
// Parts:
// - BusConnection: libdbus connections and calls with a limit, for any thread. BusWatches: runs such a
// connection
//   on the main thread's event loop.
// - BusAddress: where the session bus is, and how to keep libraries from starting or awaiting one.
// - AsyncBusConnector: makes Qt's connections on a background thread; CurrentBus: the connection to use now.
//
// Rules: the main thread never waits for a bus. A bus that does not answer within the limit counts as none.
// Log: amberquill.dbus.
#pragma once

#include <QByteArray>
#include <QLoggingCategory>
#include <chrono>
#include <dbus/dbus.h>
#include <memory>
#include <optional>

namespace amberquill::desktop {

Q_DECLARE_LOGGING_CATEGORY(dbusLog)

struct MessageUnref {
    void operator()(DBusMessage* message) const { dbus_message_unref(message); }
};
using BusMessage = std::unique_ptr<DBusMessage, MessageUnref>;

struct ConnectionClose {
    void operator()(DBusConnection* connection) const {
        dbus_connection_close(connection);
        dbus_connection_unref(connection);
    }
};
// A connection of its own to a bus. One thread at a time uses it.
using BusConnection = std::unique_ptr<DBusConnection, ConnectionClose>;

// Never null: memory that is not there ends the program, as everywhere else in it.
[[nodiscard]] BusMessage makeCall(const QByteArray& destination, const QByteArray& path,
                                  const QByteArray& interface, const QByteArray& method);

// What a call was answered with.
struct BusReply {
    BusMessage message; // null: an error
    QByteArray error;   // its name

    explicit operator bool() const { return message != nullptr; }
};

// Waits for the answer, no longer than that.
[[nodiscard]] BusReply call(DBusConnection& connection, DBusMessage& message,
                            std::chrono::milliseconds longest);

// Connects to the first bus of an address (D-Bus Specification, "Server Addresses") and says hello. Null:
// there is none, or it has not answered in time. An address that asks to launch a bus leads to none.
[[nodiscard]] BusConnection connectToBus(const QByteArray& address, std::chrono::milliseconds longest);

// Whether the connection has the name now. None: the bus has not answered in time.
[[nodiscard]] std::optional<bool> takeName(DBusConnection& connection, const QByteArray& name,
                                           std::chrono::milliseconds longest);

// Returns once everything that the bus sent before has arrived and waits to be read.
void catchUp(DBusConnection& connection, std::chrono::milliseconds longest);

} // namespace amberquill::desktop
