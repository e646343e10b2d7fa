#pragma once

#include "platform/linux/environment/Environment.h"
#include "platform/linux/graphics/GraphicsFindings.h"

#include <QByteArray>
#include <vector>

namespace amberquill::desktop {

// Whether one of Mesa's variables asks for OpenGL on the CPU.
[[nodiscard]] bool asksForSoftware(const Environment& environment);

// The display servers that Qt will try, in its order.
[[nodiscard]] std::vector<DisplayServer> displayServers(const Environment& environment);

// Whether an X display's name means a server on this machine: ":0", "unix:0". A forwarded connection does not
// carry what the local GPU draws.
[[nodiscard]] bool isLocalDisplay(const QByteArray& display);

} // namespace amberquill::desktop
