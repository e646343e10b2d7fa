#pragma once

#include "platform/linux/dbus/BusWatches.h"
#include "platform/linux/session/ApplicationRequest.h"

#include <functional>

namespace amberquill::desktop {

// The program's object on a bus: answers org.freedesktop.Application. Main thread only.
class ApplicationObject {
public:
    // `carryOut` gets each request before its caller is answered; the requests that have arrived before, at
    // once. `lost` is called when the bus has gone; the object is not to be deleted from there.
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
