#pragma once

#include <QDBusConnection>
#include <functional>

namespace amberquill::desktop {

// Tells the connection to the session bus to use now: another one once the bus has gone and come back, one
// that is not connected where there is none. The first call may connect, which takes a moment. Main thread
// only.
using CurrentBus = std::function<QDBusConnection()>;

} // namespace amberquill::desktop
