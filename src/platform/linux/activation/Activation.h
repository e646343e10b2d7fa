// platform/linux/activation/: how the right to come to the front is handed on, from who starts the launcher
// to the launcher and from it to the applications it starts: a folder a window system.
#pragma once

#include "platform/ActivationTokens.h"
#include "platform/linux/applications/launching/StartupNotifications.h"

#include <memory>

namespace amberquill {
class MainQueue;
}

namespace amberquill::desktop {

// Those of the window system that the application object runs on; null objects where it has none. Never null.
// They are destroyed before the application object.
[[nodiscard]] std::unique_ptr<ActivationTokens> makeActivationTokens(MainQueue& queue);
[[nodiscard]] std::unique_ptr<StartupNotifications> makeStartupNotifications();

} // namespace amberquill::desktop
