#include "platform/linux/graphics/HardwareGpu.h"

#include "platform/linux/graphics/GraphicsFindings.h"
#include "platform/linux/graphics/RenderNodes.h"
#include "platform/linux/graphics/ServerOffers.h"

#include <unistd.h>

namespace amberquill::desktop {

Q_LOGGING_CATEGORY(graphicsLog, "amberquill.graphics", QtCriticalMsg)
namespace {

[[nodiscard]] ServerOffers ask(DisplayServer server, const Environment& environment) {
    switch (server) {
    case DisplayServer::X11:
        return isLocalDisplay(environment("DISPLAY").value_or(QByteArray())) ? askX11Server()
                                                                             : ServerOffers{};
    case DisplayServer::Wayland:
        // An inherited connection serves one client only, and Qt needs it.
        return !environment("WAYLAND_SOCKET") ? askWaylandCompositor()
                                              : ServerOffers{.reached = true, .takesGpuBuffers = true};
    case DisplayServer::Other:
        break;
    }
    return {.reached = true};
}

} // namespace

bool hasHardwareGpu() {
    const Environment environment = processEnvironment();
    GraphicsFindings findings{
        .softwareAskedFor = asksForSoftware(environment),
        .renderNodes = renderNodes("/dev/dri", "/sys/class/drm"),
        .hasNvidiaDevice = access("/dev/nvidiactl", R_OK | W_OK) == 0,
    };
    if (findings.softwareAskedFor || (findings.renderNodes.empty() && !findings.hasNvidiaDevice)) {
        qCDebug(graphicsLog) << (findings.softwareAskedFor ? "software is asked for" : "no GPU");
        return false; // no need to ask the server
    }
    for (const auto server : displayServers(environment)) {
        const auto offers = ask(server, environment);
        if (offers.reached) {
            findings.server = server;
            findings.serverTakesGpuBuffers = offers.takesGpuBuffers;
            findings.serverHasNvidiaGlx = offers.hasNvidiaGlx;
            break;
        }
    }
    const bool draws = drawsOnHardware(findings);
    qCDebug(graphicsLog) << findings.renderNodes.size()
                         << "render nodes; server takes GPU buffers:" << findings.serverTakesGpuBuffers
                         << "hardware draws:" << draws;
    return draws;
}

} // namespace amberquill::desktop
