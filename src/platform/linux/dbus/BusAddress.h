#pragma once

#include "platform/linux/environment/Environment.h"

#include <QByteArray>
#include <QString>

namespace amberquill::desktop {

// The address of the session bus: $DBUS_SESSION_BUS_ADDRESS, or else the socket at the usual path. None:
// there is no bus.
[[nodiscard]] std::optional<QByteArray> sessionBusAddress(const Environment& environment);

// If there is no session bus, keeps the D-Bus libraries in this process from launching one. Call it at the
// start of main(), before any other thread.
void doNotLaunchSessionBus(const Environment& environment);

// Keeps the D-Bus libraries in this process from connecting to the session bus, which does not answer. Call
// it before their first connection.
void disableSessionBus();

// The folder of the bus's socket. Empty: the address names no socket file.
[[nodiscard]] QString busSocketFolder(const QByteArray& address);

} // namespace amberquill::desktop
