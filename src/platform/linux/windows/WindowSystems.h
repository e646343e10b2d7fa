// platform/linux/windows/: which of the window systems the program runs on.
#pragma once

#include "platform/ScreenCapture.h"
#include "platform/ScrollDevices.h"
#include "platform/WindowSystem.h"

#include <memory>

namespace amberquill::desktop {

// The window system that the application object runs on; on one that is neither X11 nor Wayland (Qt's
// "offscreen", a bare frame buffer) one that shows the window full screen and no more. Never null.
[[nodiscard]] std::unique_ptr<WindowSystem> makeWindowSystem();

// What that window system knows of the devices that scroll. Never null.
[[nodiscard]] std::unique_ptr<ScrollDevices> makeScrollDevices();

// What sees that window system's screens. Never null; one that sees nothing where the program is a guest of
// X11 in a Wayland session, whose windows are elsewhere.
[[nodiscard]] std::unique_ptr<ScreenCapture> makeScreenCapture();

} // namespace amberquill::desktop
