#pragma once

#include "platform/linux/environment/Environment.h"

namespace amberquill::desktop {

// Qt 6.4 crashes when a text field asks the compositor's input method for the writing direction and the
// compositor has no seat: no keyboard or pointer is plugged in, or it runs without a screen. In this case,
// selects one of Qt's own input methods, unless the environment already selects one. Call it at the start of
// main(), before the application object and any other thread exist. Costs one connection and one round trip
// under Wayland.
void avoidInputMethodWithoutSeat(const Environment& environment);

} // namespace amberquill::desktop
