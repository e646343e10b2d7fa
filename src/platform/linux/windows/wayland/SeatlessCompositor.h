#pragma once

#include "platform/linux/environment/Environment.h"

namespace amberquill::desktop {

// Qt 6.4 ends the program when a text field asks a compositor's input method for the writing direction while
// the compositor has no seat: no keyboard or pointer is plugged in, or it runs without a screen. There, Qt is
// told to use an input method of its own instead, unless one was asked for already. For the start of main(),
// before the application object and any other thread. Costs one connection and one round trip under Wayland.
void avoidInputMethodWithoutSeat(const Environment& environment);

} // namespace amberquill::desktop
