// platform/linux/dbus/: D-Bus helpers that several rooms share. Two libraries are in use: libdbus before the
// application object exists and for bounded waits (the single instance), QtDBus elsewhere (portals, trays,
// systemd).
//
// Parts:
// - BusConnection: libdbus connections and calls with a limit, for any thread. BusWatches: runs such a
//   connection on the main thread's event loop.
// - BusAddress: the session bus's address, and ways to keep libraries from launching or awaiting a bus.
// - AsyncBusConnector: makes QtDBus connections on a background thread. CurrentBus: the current connection.
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

// Never null: if there is not enough memory, the program ends, as everywhere else.
[[nodiscard]] BusMessage makeCall(const QByteArray& destination, const QByteArray& path,
                                  const QByteArray& interface, const QByteArray& method);

// The reply to a call.
struct BusReply {
    BusMessage message; // null: an error
    QByteArray error;   // its name

    explicit operator bool() const { return message != nullptr; }
};

// Waits for the reply, for at most `longest`.
[[nodiscard]] BusReply call(DBusConnection& connection, DBusMessage& message,
                            std::chrono::milliseconds longest);

// Connects to the first reachable bus of an address (D-Bus Specification, "Server Addresses") and registers
// with it. Null: no bus, or it has not answered in time. An address that begins with "autolaunch:" counts as
// no bus.
[[nodiscard]] BusConnection connectToBus(const QByteArray& address, std::chrono::milliseconds longest);

// Requests the name. Whether the connection owns it now; none: the bus has not answered in time.
[[nodiscard]] std::optional<bool> takeName(DBusConnection& connection, const QByteArray& name,
                                           std::chrono::milliseconds longest);

// Returns when all messages that the bus sent before this call are in the connection's incoming queue.
void catchUp(DBusConnection& connection, std::chrono::milliseconds longest);

} // namespace amberquill::desktop
