#include "platform/linux/gpu/GraphicsEnvironment.h"

#include <QList>

namespace amberquill::desktop {
namespace {

// Mesa's reading of a switch.
[[nodiscard]] bool isOn(const QByteArray& value) {
    const auto text = value.toLower();
    return !text.isEmpty() && text != "0" && text != "n" && text != "no" && text != "f" && text != "false";
}

// "wayland-egl:option" names the platform "wayland".
[[nodiscard]] DisplayServer serverOf(const QByteArray& platform) {
    if (platform.startsWith("wayland")) {
        return DisplayServer::wayland;
    }
    return platform == "xcb" || platform.startsWith("xcb:") ? DisplayServer::x11 : DisplayServer::other;
}

} // namespace

bool asksForSoftware(const Environment& environment) {
    const auto driver = environment("GALLIUM_DRIVER");
    const auto loader = environment("MESA_LOADER_DRIVER_OVERRIDE");
    return isOn(environment("LIBGL_ALWAYS_SOFTWARE")) || driver == "llvmpipe" || driver == "softpipe" ||
           driver == "swr" || loader == "swrast" || loader == "kms_swrast";
}

std::vector<DisplayServer> displayServers(const Environment& environment) {
    std::vector<DisplayServer> servers;
    const auto platforms = environment("QT_QPA_PLATFORM");
    if (!platforms.isEmpty()) {
        for (const auto& platform : platforms.split(';')) {
            servers.push_back(serverOf(platform));
        }
        return servers;
    }
    if (!environment("WAYLAND_DISPLAY").isEmpty() || environment("XDG_SESSION_TYPE") == "wayland") {
        servers.push_back(DisplayServer::wayland);
    }
    if (!environment("DISPLAY").isEmpty()) {
        servers.push_back(DisplayServer::x11);
    }
    return servers;
}

bool isLocalDisplay(const QByteArray& display) {
    return display.startsWith(':') || display.startsWith("unix:");
}

} // namespace amberquill::desktop
