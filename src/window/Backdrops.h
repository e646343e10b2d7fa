#pragma once

#include "views/Backdrop.h"

#include <memory>

class QScreen;

namespace amberquill {

class WindowSystem;

// Begins to make the backdrop for a screen; null: the screen that the window system will choose. If the
// window system blurs what lies behind translucent windows, the screen is not read. The program's own dialogs
// are no part of the desktop: they are left out if the window system tells where they are. `capture` is used
// by nobody else until the screen has been read. Main thread only.
[[nodiscard]] std::shared_ptr<const Backdrop> makeBackdrop(ScreenCapture& capture,
                                                           const WindowSystem& windows, const QScreen* screen,
                                                           BackgroundTheme theme, bool windowIsTranslucent);

} // namespace amberquill
