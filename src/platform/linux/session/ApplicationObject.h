#pragma once

#include "platform/linux/dbus/BusWatches.h"
#include "platform/linux/session/ApplicationRequest.h"

#include <functional>

namespace amberquill::desktop {

// The program's object on a bus: answers org.freedesktop.Application. Main thread only.
class ApplicationObject {
public:
    // `carryOut` gets each request before its caller gets the reply. Requests that have already arrived are
    // passed by the constructor. `lost` is called when the connection is lost; it must not delete this
    // object.
    ApplicationObject(
        BusConnection connection, std::function<void(const ApplicationRequest&)> carryOut,
        std::function<void()> lost = [] {});
    ~ApplicationObject();

    ApplicationObject(const ApplicationObject&) = delete;
    ApplicationObject& operator=(const ApplicationObject&) = delete;

private:
    static DBusHandlerResult receive(DBusConnection* connection, DBusMessage* message, void* self);
    static DBusHandlerResult notice(DBusConnection* connection, DBusMessage* message, void* self);
    DBusHandlerResult answer(DBusMessage& message);
    void send(BusMessage reply);

    BusConnection connection_;
    std::function<void(const ApplicationRequest&)> carryOut_;
    std::function<void()> lost_;
    BusWatches watches_;
};

} // namespace amberquill::desktop
