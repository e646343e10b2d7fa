// platform/linux/activation/: how the right to come to the front is handed on, from who starts the launcher
// to the launcher and from it to the applications it starts: a folder a window system.
#pragma once

#include "platform/ActivationTokens.h"
#include "platform/linux/applications/launching/InheritedState.h"
#include "platform/linux/applications/launching/StartupNotifications.h"

#include <QString>
#include <QStringView>
#include <memory>

namespace amberquill {
class MainQueue;
}

namespace amberquill::desktop {

// Those of the window system that the application object runs on; null objects where it has none. Never null.
// They are destroyed before the application object.
[[nodiscard]] std::unique_ptr<ActivationTokens> makeActivationTokens(MainQueue& queue);
[[nodiscard]] std::unique_ptr<StartupNotifications> makeStartupNotifications();

// The token or startup id that the launcher itself was started with; empty: none. `platform` is the
// application object's, or empty before there is one; each window system is given its own kind first.
//
// It is good for one showing, so it is removed from our environment. Call it after the application object is
// made, unless this process only hands the token over: on X11 Qt takes the id at that moment, and completes
// the startup notification when the first window is shown.
[[nodiscard]] QString takeStartToken(const InheritedEnvironment& start, QStringView platform);

} // namespace amberquill::desktop
