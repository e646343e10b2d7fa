#pragma once

#include "platform/linux/gpu/GraphicsFindings.h"

#include <QByteArray>
#include <functional>
#include <vector>

namespace amberquill::desktop {

// The value of an environment variable; empty where it is not set.
using Environment = std::function<QByteArray(const char* name)>;

// Whether one of Mesa's variables asks for OpenGL on the CPU.
[[nodiscard]] bool asksForSoftware(const Environment& environment);

// The display servers that Qt will try, in its order.
[[nodiscard]] std::vector<DisplayServer> displayServers(const Environment& environment);

// Whether an X display's name means a server on this machine: ":0", "unix:0". A forwarded connection does not
// carry what the local GPU draws.
[[nodiscard]] bool isLocalDisplay(const QByteArray& display);

} // namespace amberquill::desktop
