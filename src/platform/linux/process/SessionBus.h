#pragma once

#include "platform/linux/files/Environment.h"

namespace amberquill::desktop {

// Whether there is a session bus to connect to: its address is given, or its socket is at the usual place.
bool hasSessionBus(const Environment& environment);

// Where there is none, keeps the D-Bus libraries in this process from starting one of their own: the program
// does without. For the start of main(), before any other thread.
void doNotLaunchSessionBus(const Environment& environment);

} // namespace amberquill::desktop
