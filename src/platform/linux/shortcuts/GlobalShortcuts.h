#pragma once

#include "platform/GlobalShortcut.h"

#include <QDBusConnection>
#include <functional>
#include <memory>

namespace amberquill {
class MainQueue;
}

namespace amberquill::desktop {

// Those of the window system that the application object runs on. `connectToBus` makes a connection to the
// session bus of its own; it is called when a start is over, and again when the bus has ended it. Never null;
// destroyed before the application object.
[[nodiscard]] std::unique_ptr<GlobalShortcut>
makeGlobalShortcut(MainQueue& queue, std::function<QDBusConnection()> connectToBus);

} // namespace amberquill::desktop
