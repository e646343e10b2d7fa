#pragma once

#include "views/Backdrop.h"

#include <memory>

class QScreen;

namespace amberquill {

class WindowSystem;

// Begins to make what the launcher is shown over on a screen; null stands for the one that the window system
// will choose. Where the window system blurs what lies behind a translucent window, nothing is read. The
// program's own dialogs are left out where their places are known: they are no part of the desktop. `capture`
// is not used by others until the screen has been read. Main thread only.
[[nodiscard]] std::shared_ptr<const Backdrop> makeBackdrop(ScreenCapture& capture,
                                                           const WindowSystem& windows, const QScreen* screen,
                                                           BackgroundTheme theme, bool windowIsTranslucent);

} // namespace amberquill
