#pragma once

#include "platform/linux/environment/Environment.h"

#include <QByteArray>
#include <QString>

namespace amberquill::desktop {

// The address of the session bus: the one that is given, or that of the socket at the usual place. None:
// there is no bus to connect to.
[[nodiscard]] std::optional<QByteArray> sessionBusAddress(const Environment& environment);

// Where there is none, keeps the D-Bus libraries in this process from starting one of their own: the program
// does without. For the start of main(), before any other thread.
void doNotLaunchSessionBus(const Environment& environment);

// Keeps the D-Bus libraries in this process from waiting for a session bus that does not answer. For when
// none of them has tried yet.
void leaveSessionBusAlone();

// The folder in which a bus of that address has its socket; empty: it has none in a folder.
[[nodiscard]] QString busSocketFolder(const QByteArray& address);

} // namespace amberquill::desktop
