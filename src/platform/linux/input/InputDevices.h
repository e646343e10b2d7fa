// platform/linux/input/: global shortcuts, which work without the focus, and the kinds of scrolling devices.
//
// Parts:
// - x11/KeyGrabs (pure): the keys and modifiers of a chord on this keyboard; tells real presses from
//   repetitions. x11/X11Shortcuts grabs the keys on the root window.
// - portal/PortalSession: one session with the GlobalShortcuts portal; PortalTypes (pure): its messages.
//   PortalShortcuts opens sessions, also again after the portal or the bus has ended one.
// - x11/X11ScrollDevices: which devices are touchpads. Qt 6.4 reports all of them as mice.
//
// Rules: refused keys are not an error; they are logged and the chord does nothing. Main thread only; nothing
// blocks on the portal. Begin with makeGlobalShortcut. Log: amberquill.input.
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

// The global shortcuts for the window system that the application object runs on. `connect`: for
// PortalShortcuts. Never null; the application object outlives the result.
[[nodiscard]] std::unique_ptr<GlobalShortcut> makeGlobalShortcut(MainQueue& queue,
                                                                 PortalShortcuts::Connect connect);

// The scrolling devices that the window system reports. Never null.
[[nodiscard]] std::unique_ptr<ScrollDevices> makeScrollDevices();

} // namespace amberquill::desktop
