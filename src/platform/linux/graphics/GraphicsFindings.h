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
    bool renders3d = true;   // false: the GPU of a virtual machine without 3D
};

// The facts about the machine and the session that decide how OpenGL is drawn.
struct GraphicsFindings {
    bool softwareAskedFor = false; // by one of Mesa's environment variables
    std::vector<RenderNode> renderNodes = {};
    bool hasNvidiaDevice = false; // the vendor's own driver, which may offer no render node
    DisplayServer server = DisplayServer::Other;
    // Whether clients can pass GPU buffers to the server. X11: the extension DRI3. Wayland: the interface
    // zwp_linux_dmabuf_v1 or wl_drm.
    bool serverTakesGpuBuffers = false;
    bool serverHasNvidiaGlx = false; // X11: the extension NV-GLX
};

// Whether hardware would draw OpenGL. False: it would be emulated on the CPU.
[[nodiscard]] bool drawsOnHardware(const GraphicsFindings& findings);

// Whether one of Mesa's variables asks for OpenGL on the CPU.
[[nodiscard]] bool asksForSoftware(const Environment& environment);

// The display servers that Qt will try, in its order.
[[nodiscard]] std::vector<DisplayServer> displayServers(const Environment& environment);

// Whether an X display's name means a server on this machine: ":0", "unix:0". A forwarded connection cannot
// carry GPU buffers.
[[nodiscard]] bool isLocalDisplay(const QByteArray& display);

} // namespace amberquill::desktop
