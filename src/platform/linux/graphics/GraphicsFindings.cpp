#include "platform/linux/graphics/GraphicsFindings.h"

#include <QList>
#include <algorithm>
#include <array>
#include <string_view>

namespace amberquill::desktop {

namespace {

// Kernel display drivers for hardware without a 3D engine: frame buffers of firmware, of server boards, of
// USB adapters and of virtual machines, and the kernel's two test drivers.
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

[[nodiscard]] QByteArray value(const Environment& environment, const char* name) {
    return environment(name).value_or(QByteArray());
}

// Reads a boolean variable as Mesa does.
[[nodiscard]] bool isOn(const QByteArray& setting) {
    const auto text = setting.toLower();
    return !text.isEmpty() && text != "0" && text != "n" && text != "no" && text != "f" && text != "false";
}

// "wayland-egl:option" names the platform "wayland".
[[nodiscard]] DisplayServer serverOf(const QByteArray& platform) {
    if (platform.startsWith("wayland")) {
        return DisplayServer::Wayland;
    }
    return platform == "xcb" || platform.startsWith("xcb:") ? DisplayServer::X11 : DisplayServer::Other;
}

} // namespace

bool drawsOnHardware(const GraphicsFindings& findings) {
    if (findings.softwareAskedFor) {
        return false;
    }
    const bool hasRenderNode = std::any_of(findings.renderNodes.begin(), findings.renderNodes.end(), draws);
    switch (findings.server) {
    case DisplayServer::X11:
        return (hasRenderNode && findings.serverTakesGpuBuffers) ||
               (findings.hasNvidiaDevice && findings.serverHasNvidiaGlx);
    case DisplayServer::Wayland:
        return (hasRenderNode || findings.hasNvidiaDevice) && findings.serverTakesGpuBuffers;
    case DisplayServer::Other:
        break;
    }
    return false;
}

bool asksForSoftware(const Environment& environment) {
    const auto driver = value(environment, "GALLIUM_DRIVER");
    const auto loader = value(environment, "MESA_LOADER_DRIVER_OVERRIDE");
    return isOn(value(environment, "LIBGL_ALWAYS_SOFTWARE")) || driver == "llvmpipe" ||
           driver == "softpipe" || driver == "swr" || loader == "swrast" || loader == "kms_swrast";
}

std::vector<DisplayServer> displayServers(const Environment& environment) {
    std::vector<DisplayServer> servers;
    const auto platforms = value(environment, "QT_QPA_PLATFORM");
    if (!platforms.isEmpty()) {
        for (const auto& platform : platforms.split(';')) {
            servers.push_back(serverOf(platform));
        }
        return servers;
    }
    if (!value(environment, "WAYLAND_DISPLAY").isEmpty() ||
        value(environment, "XDG_SESSION_TYPE") == "wayland") {
        servers.push_back(DisplayServer::Wayland);
    }
    if (!value(environment, "DISPLAY").isEmpty()) {
        servers.push_back(DisplayServer::X11);
    }
    return servers;
}

bool isLocalDisplay(const QByteArray& display) {
    return display.startsWith(':') || display.startsWith("unix:");
}

} // namespace amberquill::desktop
