// platform/linux/input/: keys that reach the program whatever window has the focus, and the devices that
// scroll.
//
// Parts:
// - x11/KeyGrabs (pure): which keys and modifiers a chord is on this keyboard, and which events are presses
// by a
//   person rather than repetitions. x11/X11Shortcuts grabs them on the root window.
// - portal/PortalSession: one session with the GlobalShortcuts portal; PortalTypes (pure): its messages.
//   PortalShortcuts opens sessions, again when the portal or the bus comes back.
// - x11/X11ScrollDevices: which devices are touchpads. Qt 6.4 takes all of them for mice.
//
// Rules: refused keys are not an error; they are logged and the chord does nothing. Main thread only; nothing
// waits for the portal. Begin with makeGlobalShortcut. Log: amberquill.input.
#pragma once

#include "platform/GlobalShortcut.h"
#include "platform/ScrollDevices.h"
#include "platform/linux/input/portal/PortalShortcuts.h"

#include <QLoggingCategory>
#include <memory>

namespace amberquill {
class MainQueue;
}

namespace amberquill::desktop {

Q_DECLARE_LOGGING_CATEGORY(inputLog)

// The global shortcuts of the window system that the application object runs on. `connect` is for the
// portal's. Never null; destroyed before the application object.
[[nodiscard]] std::unique_ptr<GlobalShortcut> makeGlobalShortcut(MainQueue& queue,
                                                                 PortalShortcuts::Connect connect);

// The devices that scroll, as far as that window system tells of them. Never null.
[[nodiscard]] std::unique_ptr<ScrollDevices> makeScrollDevices();

} // namespace amberquill::desktop
