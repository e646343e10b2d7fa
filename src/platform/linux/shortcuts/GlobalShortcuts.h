#pragma once

#include "platform/GlobalShortcut.h"
#include "platform/linux/shortcuts/PortalShortcuts.h"

#include <memory>

namespace amberquill {
class MainQueue;
}

namespace amberquill::desktop {

// Those of the window system that the application object runs on. `connect` is for the portal's. Never null;
// destroyed before the application object.
[[nodiscard]] std::unique_ptr<GlobalShortcut> makeGlobalShortcut(MainQueue& queue,
                                                                 PortalShortcuts::Connect connect);

} // namespace amberquill::desktop
