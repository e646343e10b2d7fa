// platform/linux/windows/: which of the window systems the program runs on.
#pragma once

#include "platform/WindowSystem.h"

#include <memory>

namespace amberquill::desktop {

// The window system that the application object runs on; on one that is neither X11 nor Wayland (Qt's
// "offscreen", a bare frame buffer) one that shows the window full screen and no more. Never null.
[[nodiscard]] std::unique_ptr<WindowSystem> makeWindowSystem();

} // namespace amberquill::desktop
