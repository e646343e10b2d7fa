#pragma once

#include "platform/GlobalShortcut.h"

#include <memory>

namespace amberquill {
class MainQueue;
}

namespace amberquill::desktop {

// Those of the window system that the application object runs on. Never null; destroyed before the
// application object.
[[nodiscard]] std::unique_ptr<GlobalShortcut> makeGlobalShortcut(MainQueue& queue);

} // namespace amberquill::desktop
