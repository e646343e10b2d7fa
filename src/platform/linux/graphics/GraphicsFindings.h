#pragma once

#include "platform/linux/environment/Environment.h"

#include <QByteArray>
#include <vector>

namespace amberquill::desktop {

enum class DisplayServer { Other, X11, Wayland };

// A GPU that the kernel offers for rendering.
struct RenderNode {
    QByteArray driver;       // the kernel driver's name, as in /sys/bus/*/drivers
    bool mayBeOpened = true; // by this user
    bool renders3d = true;   // false where a virtual machine passes no 3D through
};

// What was found out about the machine and the session.
struct GraphicsFindings {
    bool softwareAskedFor = false; // by one of Mesa's environment variables
    std::vector<RenderNode> renderNodes = {};
    bool hasNvidiaDevice = false; // of the vendor's own driver, which may offer no render node
    DisplayServer server = DisplayServer::Other;
    // X11: the extension DRI3, by which a client hands over what a GPU has drawn.
    // Wayland: the interface zwp_linux_dmabuf_v1 or wl_drm, which do the same.
    bool serverTakesGpuBuffers = false;
    bool serverHasNvidiaGlx = false; // X11: the extension NV-GLX
};

// Whether OpenGL would be drawn by hardware. False where it would be emulated on the CPU.
[[nodiscard]] bool drawsOnHardware(const GraphicsFindings& findings);

// Whether one of Mesa's variables asks for OpenGL on the CPU.
[[nodiscard]] bool asksForSoftware(const Environment& environment);

// The display servers that Qt will try, in its order.
[[nodiscard]] std::vector<DisplayServer> displayServers(const Environment& environment);

// Whether an X display's name means a server on this machine: ":0", "unix:0". A forwarded connection does not
// carry what the local GPU draws.
[[nodiscard]] bool isLocalDisplay(const QByteArray& display);

} // namespace amberquill::desktop
