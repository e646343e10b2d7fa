// platform/linux/input/: keys that reach the program anywhere, and the devices that scroll.
#pragma once

#include "platform/GlobalShortcut.h"
#include "platform/ScrollDevices.h"
#include "platform/linux/input/portal/PortalShortcuts.h"

#include <memory>

namespace amberquill {
class MainQueue;
}

namespace amberquill::desktop {

// The global shortcuts of the window system that the application object runs on. `connect` is for the
// portal's. Never null; destroyed before the application object.
[[nodiscard]] std::unique_ptr<GlobalShortcut> makeGlobalShortcut(MainQueue& queue,
                                                                 PortalShortcuts::Connect connect);

// The devices that scroll, as far as that window system tells of them. Never null.
[[nodiscard]] std::unique_ptr<ScrollDevices> makeScrollDevices();

} // namespace amberquill::desktop
