#include "platform/linux/graphics/GraphicsFindings.h"

#include <QMap>
#include <gtest/gtest.h>

namespace amberquill::desktop {
namespace {

[[nodiscard]] Environment with(QMap<QByteArray, QByteArray> variables) {
    return [variables = std::move(variables)](const char* name) -> std::optional<QByteArray> {
        const auto found = variables.find(name);
        return found == variables.end() ? std::nullopt : std::optional(found.value());
    };
}

TEST(GraphicsEnvironment, AnEmptyEnvironmentRequestsNothing) {
    EXPECT_FALSE(asksForSoftware(with({})));
}

TEST(GraphicsEnvironment, MesasSoftwareSwitchIsReadLikeMesaDoes) {
    for (const char* on : {"1", "true", "TRUE", "yes", "y"}) {
        EXPECT_TRUE(asksForSoftware(with({{"LIBGL_ALWAYS_SOFTWARE", on}}))) << on;
    }
    for (const char* off : {"", "0", "false", "False", "no", "n", "f"}) {
        EXPECT_FALSE(asksForSoftware(with({{"LIBGL_ALWAYS_SOFTWARE", off}}))) << off;
    }
}

TEST(GraphicsEnvironment, ADriverThatDrawsOnTheCpuIsSoftware) {
    EXPECT_TRUE(asksForSoftware(with({{"GALLIUM_DRIVER", "llvmpipe"}})));
    EXPECT_TRUE(asksForSoftware(with({{"GALLIUM_DRIVER", "softpipe"}})));
    EXPECT_TRUE(asksForSoftware(with({{"MESA_LOADER_DRIVER_OVERRIDE", "swrast"}})));
    EXPECT_FALSE(asksForSoftware(with({{"GALLIUM_DRIVER", "iris"}})));
    EXPECT_FALSE(asksForSoftware(with({{"MESA_LOADER_DRIVER_OVERRIDE", "zink"}})));
}

using Servers = std::vector<DisplayServer>;

TEST(GraphicsEnvironment, AnX11SessionHasAnX11Server) {
    EXPECT_EQ(displayServers(with({{"DISPLAY", ":0"}})), Servers{DisplayServer::X11});
}

TEST(GraphicsEnvironment, WaylandComesBeforeTheX11ServerInsideIt) {
    EXPECT_EQ(displayServers(with({{"DISPLAY", ":0"}, {"WAYLAND_DISPLAY", "wayland-0"}})),
              (Servers{DisplayServer::Wayland, DisplayServer::X11}));
    EXPECT_EQ(displayServers(with({{"DISPLAY", ":0"}, {"XDG_SESSION_TYPE", "wayland"}})),
              (Servers{DisplayServer::Wayland, DisplayServer::X11}));
}

TEST(GraphicsEnvironment, AChosenQtPlatformIsTheOnlyOne) {
    const QMap<QByteArray, QByteArray> session{{"DISPLAY", ":0"}, {"WAYLAND_DISPLAY", "wayland-0"}};
    const auto chosen = [&](const char* platform) {
        auto variables = session;
        variables.insert("QT_QPA_PLATFORM", platform);
        return displayServers(with(variables));
    };
    EXPECT_EQ(chosen("xcb"), Servers{DisplayServer::X11});
    EXPECT_EQ(chosen("wayland"), Servers{DisplayServer::Wayland});
    EXPECT_EQ(chosen("wayland-egl"), Servers{DisplayServer::Wayland});
    EXPECT_EQ(chosen("offscreen"), Servers{DisplayServer::Other});
    EXPECT_EQ(chosen("offscreen:size=1x1"), Servers{DisplayServer::Other});
    EXPECT_EQ(chosen("wayland;xcb"), (Servers{DisplayServer::Wayland, DisplayServer::X11}));
}

TEST(GraphicsEnvironment, WithoutADisplayThereIsNoServer) {
    EXPECT_EQ(displayServers(with({})), Servers{});
}

TEST(GraphicsEnvironment, ADisplayWithAHostNameIsNotLocal) {
    EXPECT_TRUE(isLocalDisplay(":0"));
    EXPECT_TRUE(isLocalDisplay(":1.0"));
    EXPECT_TRUE(isLocalDisplay("unix:0"));
    EXPECT_FALSE(isLocalDisplay("localhost:10.0"));
    EXPECT_FALSE(isLocalDisplay("10.0.0.7:0"));
    EXPECT_FALSE(isLocalDisplay(""));
}

} // namespace
} // namespace amberquill::desktop
