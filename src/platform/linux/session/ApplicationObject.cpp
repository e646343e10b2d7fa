#include "platform/linux/session/ApplicationObject.h"

namespace amberquill::desktop {

ApplicationObject::ApplicationObject(BusConnection connection,
                                     std::function<void(const ApplicationRequest&)> carryOut,
                                     std::function<void()> lost)
    : connection_(std::move(connection))
    , carryOut_(std::move(carryOut))
    , lost_(std::move(lost))
    , watches_(*connection_) {
    DBusObjectPathVTable table = {};
    table.message_function = receive;
    dbus_connection_try_register_object_path(connection_.get(), applicationBusPath, &table, this, nullptr);
    dbus_connection_add_filter(connection_.get(), notice, this, nullptr);
    watches_.dispatch();
}

ApplicationObject::~ApplicationObject() {
    dbus_connection_remove_filter(connection_.get(), notice, this);
    dbus_connection_unregister_object_path(connection_.get(), applicationBusPath);
}

DBusHandlerResult ApplicationObject::receive(DBusConnection* /*connection*/, DBusMessage* message,
                                             void* self) {
    return static_cast<ApplicationObject*>(self)->answer(*message);
}

DBusHandlerResult ApplicationObject::notice(DBusConnection* /*connection*/, DBusMessage* message,
                                            void* self) {
    if (dbus_message_is_signal(message, DBUS_INTERFACE_LOCAL, "Disconnected") != FALSE) {
        static_cast<ApplicationObject*>(self)->lost_();
    }
    return DBUS_HANDLER_RESULT_NOT_YET_HANDLED;
}

DBusHandlerResult ApplicationObject::answer(DBusMessage& message) {
    if (dbus_message_is_method_call(&message, DBUS_INTERFACE_INTROSPECTABLE, "Introspect") != FALSE) {
        BusMessage reply(dbus_message_new_method_return(&message));
        const char* const text = introspection();
        dbus_message_append_args(reply.get(), DBUS_TYPE_STRING, &text, DBUS_TYPE_INVALID);
        send(std::move(reply));
        return DBUS_HANDLER_RESULT_HANDLED;
    }
    const ReadRequest read = readRequest(message);
    if (std::holds_alternative<std::monostate>(read)) {
        // libdbus replies with "unknown method".
        return DBUS_HANDLER_RESULT_NOT_YET_HANDLED;
    }
    const auto* const request = std::get_if<ApplicationRequest>(&read);
    if (request != nullptr) {
        carryOut_(*request);
    }
    if (dbus_message_get_no_reply(&message) == FALSE) {
        send(BusMessage(request != nullptr ? dbus_message_new_method_return(&message)
                                           : dbus_message_new_error(
                                                 &message, std::get<RequestRefusal>(read).error, nullptr)));
    }
    return DBUS_HANDLER_RESULT_HANDLED;
}

void ApplicationObject::send(BusMessage reply) {
    Q_CHECK_PTR(reply.get());
    dbus_connection_send(connection_.get(), reply.get(), nullptr);
}

} // namespace amberquill::desktop
