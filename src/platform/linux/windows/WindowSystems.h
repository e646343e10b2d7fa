// platform/linux/windows/: makes the launcher's window full screen above panels, on the right screen, absent
// from task bars, with the focus, and with a blurred background if the compositor supports it.
//
// Parts:
// - x11/: X11WindowSystem by the Extended Window Manager Hints, also without a window manager. Atoms.
//   ScreenChoice (pure). FocusFilter: keeps Qt from mistaking keyboard grabs for focus changes.
// - wayland/: WaylandWindowSystem by xdg-shell. blur/BlurBehind by the compositors' two blur protocols.
//   DialogFocus: gives the keyboard focus to the open dialog. LastFrame and SeatlessCompositor avoid crashes
//   of Qt 6.4.
// - An unknown window system shows the window full screen, nothing more.
//
// Rules: main thread, on Qt's own connection. Each showing costs few round trips. Begin with
// makeWindowSystem. Log: amberquill.windows.
#pragma once

#include "platform/MainQueue.h"
#include "platform/WindowSystem.h"

#include <QLoggingCategory>
#include <memory>

namespace amberquill::desktop {

Q_DECLARE_LOGGING_CATEGORY(windowsLog)

// For the window system that the application object runs on. Never null. If that is neither X11 nor Wayland
// (Qt's "offscreen", a bare frame buffer), the result only shows the window full screen. The queue outlives
// the result.
[[nodiscard]] std::unique_ptr<WindowSystem> makeWindowSystem(MainQueue& queue);

} // namespace amberquill::desktop
