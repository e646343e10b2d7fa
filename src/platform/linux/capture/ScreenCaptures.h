// platform/linux/capture/: pictures of what is on a screen.
#pragma once

#include "platform/ScreenCapture.h"

#include <memory>

namespace amberquill::desktop {

// What sees the screens of the window system that the application object runs on. Never null; one that sees
// nothing where the program is a guest of X11 in a Wayland session, whose windows are elsewhere.
[[nodiscard]] std::unique_ptr<ScreenCapture> makeScreenCapture();

} // namespace amberquill::desktop
