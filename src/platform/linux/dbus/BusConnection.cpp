#include "platform/linux/dbus/BusConnection.h"

#include <QDeadlineTimer>
#include <QtGlobal>

namespace amberquill::desktop {

Q_LOGGING_CATEGORY(dbusLog, "amberquill.dbus", QtCriticalMsg)

namespace {

// Far above the size of any real request.
constexpr long largestMessage = 1024L * 1024;

// Waits for the authentication, for at most `longest`. Without this, sending would wait for it without a
// limit.
bool authenticate(DBusConnection& connection, std::chrono::milliseconds longest) {
    const QDeadlineTimer end(longest);
    while (dbus_connection_get_is_authenticated(&connection) == FALSE) {
        const auto left = static_cast<int>(end.remainingTime());
        if (left <= 0 || dbus_connection_read_write(&connection, left) == FALSE) {
            return false;
        }
    }
    return true;
}

BusMessage callToBus(const char* method) {
    return makeCall(DBUS_SERVICE_DBUS, DBUS_PATH_DBUS, DBUS_INTERFACE_DBUS, method);
}

} // namespace

BusMessage makeCall(const QByteArray& destination, const QByteArray& path, const QByteArray& interface,
                    const QByteArray& method) {
    BusMessage message(dbus_message_new_method_call(destination.constData(), path.constData(),
                                                    interface.constData(), method.constData()));
    Q_CHECK_PTR(message.get());
    return message;
}

BusReply call(DBusConnection& connection, DBusMessage& message, std::chrono::milliseconds longest) {
    DBusError error = DBUS_ERROR_INIT;
    BusReply reply;
    reply.message.reset(dbus_connection_send_with_reply_and_block(&connection, &message,
                                                                  static_cast<int>(longest.count()), &error));
    if (dbus_error_is_set(&error) != 0) {
        reply.error = error.name;
        dbus_error_free(&error);
    }
    return reply;
}

BusConnection connectToBus(const QByteArray& address, std::chrono::milliseconds longest) {
    if (address.isEmpty() || address.startsWith("autolaunch:")) {
        return nullptr;
    }
    BusConnection connection(dbus_connection_open_private(address.constData(), nullptr));
    if (!connection) {
        qCDebug(dbusLog) << "no bus at" << address;
        return nullptr;
    }
    dbus_connection_set_exit_on_disconnect(connection.get(), FALSE);
    dbus_connection_set_max_message_size(connection.get(), largestMessage);
    if (!authenticate(*connection, longest)) {
        qCDebug(dbusLog) << "the bus does not answer:" << address;
        return nullptr;
    }
    const BusMessage hello = callToBus("Hello");
    const BusReply reply = call(*connection, *hello, longest);
    const char* unique = nullptr;
    if (!reply || dbus_message_get_args(reply.message.get(), nullptr, DBUS_TYPE_STRING, &unique,
                                        DBUS_TYPE_INVALID) == FALSE) {
        return nullptr;
    }
    dbus_bus_set_unique_name(connection.get(), unique);
    return connection;
}

std::optional<bool> takeName(DBusConnection& connection, const QByteArray& name,
                             std::chrono::milliseconds longest) {
    const BusMessage request = callToBus("RequestName");
    const char* const wanted = name.constData();
    const dbus_uint32_t flags = DBUS_NAME_FLAG_DO_NOT_QUEUE;
    dbus_message_append_args(request.get(), DBUS_TYPE_STRING, &wanted, DBUS_TYPE_UINT32, &flags,
                             DBUS_TYPE_INVALID);
    const BusReply reply = call(connection, *request, longest);
    dbus_uint32_t answer = 0;
    if (!reply || dbus_message_get_args(reply.message.get(), nullptr, DBUS_TYPE_UINT32, &answer,
                                        DBUS_TYPE_INVALID) == FALSE) {
        return std::nullopt;
    }
    return answer == DBUS_REQUEST_NAME_REPLY_PRIMARY_OWNER || answer == DBUS_REQUEST_NAME_REPLY_ALREADY_OWNER;
}

void catchUp(DBusConnection& connection, std::chrono::milliseconds longest) {
    // A bus sends messages in order, so all earlier ones have arrived before this call's reply.
    const BusMessage any = callToBus("GetId");
    [[maybe_unused]] const BusReply reply = call(connection, *any, longest);
}

} // namespace amberquill::desktop
