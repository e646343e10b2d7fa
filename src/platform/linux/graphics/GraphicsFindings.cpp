#include "platform/linux/graphics/GraphicsFindings.h"

#include <algorithm>
#include <array>
#include <string_view>

namespace amberquill::desktop {
namespace {

// Display drivers of the kernel with no 3D engine behind them: frame buffers of firmware, of server boards,
// of USB adapters and of virtual machines, and the kernel's two test drivers.
constexpr std::array<std::string_view, 16> driversWithout3d{
    "ast",     "bochs-drm", "cirrus", "cirrus-qemu",        "gud",       "hibmc-drm", "hyperv_drm",
    "mgag200", "ofdrm",     "qxl",    "simple-framebuffer", "simpledrm", "udl",       "vboxvideo",
    "vgem",    "vkms",
};

[[nodiscard]] bool draws(const RenderNode& node) {
    const std::string_view driver(node.driver.constData(), static_cast<std::size_t>(node.driver.size()));
    return !driver.empty() && node.mayBeOpened && node.renders3d &&
           std::find(driversWithout3d.begin(), driversWithout3d.end(), driver) == driversWithout3d.end();
}

} // namespace

bool drawsOnHardware(const GraphicsFindings& findings) {
    if (findings.softwareAskedFor) {
        return false;
    }
    const bool hasRenderNode = std::any_of(findings.renderNodes.begin(), findings.renderNodes.end(), draws);
    switch (findings.server) {
    case DisplayServer::x11:
        return (hasRenderNode && findings.serverTakesGpuBuffers) ||
               (findings.hasNvidiaDevice && findings.serverHasNvidiaGlx);
    case DisplayServer::wayland:
        return (hasRenderNode || findings.hasNvidiaDevice) && findings.serverTakesGpuBuffers;
    case DisplayServer::other:
        break;
    }
    return false;
}

} // namespace amberquill::desktop
