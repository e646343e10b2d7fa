#pragma once

#include <QDeadlineTimer>

namespace amberquill::desktop {

// Waits no longer than that until something can be read from the descriptor, its end included; whether it
// can. What is there already counts at any time. Any thread.
[[nodiscard]] bool isReadableBy(int descriptor, QDeadlineTimer deadline);

} // namespace amberquill::desktop
