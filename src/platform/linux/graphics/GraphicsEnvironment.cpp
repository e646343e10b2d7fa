#include "platform/linux/graphics/GraphicsEnvironment.h"

#include <QList>

namespace amberquill::desktop {
namespace {

[[nodiscard]] QByteArray value(const Environment& environment, const char* name) {
    return environment(name).value_or(QByteArray());
}

// Mesa's reading of a switch.
[[nodiscard]] bool isOn(const QByteArray& setting) {
    const auto text = setting.toLower();
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
        servers.push_back(DisplayServer::wayland);
    }
    if (!value(environment, "DISPLAY").isEmpty()) {
        servers.push_back(DisplayServer::x11);
    }
    return servers;
}

bool isLocalDisplay(const QByteArray& display) {
    return display.startsWith(':') || display.startsWith("unix:");
}

} // namespace amberquill::desktop
