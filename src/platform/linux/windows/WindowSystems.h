// platform/linux/windows/: the launcher's window as the window system sees it: full screen above panels, on
// the right screen, out of task bars, with the focus, and blurred behind if the compositor can.
//
// Parts:
// - x11/: X11WindowSystem by the Extended Window Manager Hints, also without a window manager; Atoms;
// ScreenChoice
//   (pure); FocusFilter keeps Qt from taking grabs for lost focus.
// - wayland/: WaylandWindowSystem by xdg-shell; blur/BlurBehind by the compositors' two blur protocols;
// DialogFocus
//   gives the keys to the open dialog; SeatlessCompositor avoids a crash of Qt 6.4.
// - An unknown window system shows the window full screen, nothing more.
//
// Rules: main thread, on Qt's own connection. Each showing costs few round trips. Begin with
// makeWindowSystem. Log: amberquill.windows.
#pragma once

#include "platform/WindowSystem.h"

#include <QLoggingCategory>
#include <memory>

namespace amberquill::desktop {

Q_DECLARE_LOGGING_CATEGORY(windowsLog)

// The window system that the application object runs on; on one that is neither X11 nor Wayland (Qt's
// "offscreen", a bare frame buffer) one that shows the window full screen and no more. Never null.
[[nodiscard]] std::unique_ptr<WindowSystem> makeWindowSystem();

} // namespace amberquill::desktop
