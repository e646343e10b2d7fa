#include "platform/linux/graphics/GraphicsFindings.h"

#include <gtest/gtest.h>

namespace amberquill::desktop {
namespace {

struct Case {
    const char* name;
    GraphicsFindings findings;
    bool hardware;
};

class HardwareDrawing : public testing::TestWithParam<Case> {};

TEST_P(HardwareDrawing, FollowsFromTheFindings) {
    EXPECT_EQ(drawsOnHardware(GetParam().findings), GetParam().hardware);
}

[[nodiscard]] GraphicsFindings onX11(std::vector<RenderNode> nodes) {
    return {.renderNodes = std::move(nodes), .server = DisplayServer::X11, .serverTakesGpuBuffers = true};
}

[[nodiscard]] GraphicsFindings onWayland(std::vector<RenderNode> nodes) {
    return {.renderNodes = std::move(nodes), .server = DisplayServer::Wayland, .serverTakesGpuBuffers = true};
}

const std::vector<Case> cases{
    {"IntelOnX11", onX11({{"i915"}}), true},
    {"AmdOnX11", onX11({{"amdgpu"}}), true},
    {"AmdOnWayland", onWayland({{"amdgpu"}}), true},
    {"NouveauOnWayland", onWayland({{"nouveau"}}), true},
    {"ABoardsGpuOnWayland", onWayland({{"panfrost"}}), true},
    {"NoGpuOnX11", onX11({}), false},
    {"NoGpuOnWayland", onWayland({}), false},
    {"SoftwareAskedFor",
     {.softwareAskedFor = true,
      .renderNodes = {{"i915"}},
      .server = DisplayServer::X11,
      .serverTakesGpuBuffers = true},
     false},
    {"NodeOfAnotherUser", onX11({{.driver = "i915", .mayBeOpened = false}}), false},
    {"NodeWithoutADriver", onX11({{""}}), false},
    {"TestDriverVgem", onX11({{"vgem"}}), false},
    {"TestDriverVkms", onWayland({{"vkms"}}), false},
    {"ServerBoardAst", onX11({{"ast"}}), false},
    {"ServerBoardMatrox", onX11({{"mgag200"}}), false},
    {"FirmwareFrameBuffer", onWayland({{"simple-framebuffer"}}), false},
    {"DisplayLink", onX11({{"udl"}}), false},
    {"BochsMachine", onX11({{"bochs-drm"}}), false},
    {"CirrusMachine", onX11({{"cirrus"}}), false},
    {"QxlMachine", onX11({{"qxl"}}), false},
    {"HyperVMachine", onWayland({{"hyperv_drm"}}), false},
    {"VirtioMachineWith3d", onWayland({{.driver = "virtio_gpu", .renders3d = true}}), true},
    {"VirtioMachineWithout3d", onWayland({{.driver = "virtio_gpu", .renders3d = false}}), false},
    {"VmwareMachineWithout3d", onX11({{.driver = "vmwgfx", .renders3d = false}}), false},
    {"ServerBoardBesideARealGpu", onX11({{"ast"}, {"amdgpu"}}), true},
    {"ServerWithoutDri3",
     {.renderNodes = {{"i915"}}, .server = DisplayServer::X11, .serverTakesGpuBuffers = false},
     false},
    {"CompositorThatDrawsOnTheCpu",
     {.renderNodes = {{"i915"}}, .server = DisplayServer::Wayland, .serverTakesGpuBuffers = false},
     false},
    {"NvidiaWithoutANodeOnX11",
     {.hasNvidiaDevice = true, .server = DisplayServer::X11, .serverHasNvidiaGlx = true},
     true},
    {"NvidiaWithoutANodeOnAServerOfItsOwn",
     {.hasNvidiaDevice = true, .server = DisplayServer::X11, .serverHasNvidiaGlx = false},
     false},
    {"NvidiaGlxWithoutTheDevice",
     {.hasNvidiaDevice = false, .server = DisplayServer::X11, .serverHasNvidiaGlx = true},
     false},
    {"NvidiaOnWayland",
     {.hasNvidiaDevice = true, .server = DisplayServer::Wayland, .serverTakesGpuBuffers = true},
     true},
    {"GpuWithoutADisplayServer",
     {.renderNodes = {{"i915"}}, .server = DisplayServer::Other, .serverTakesGpuBuffers = true},
     false},
};

INSTANTIATE_TEST_SUITE_P(Table, HardwareDrawing, testing::ValuesIn(cases),
                         [](const auto& tested) { return tested.param.name; });

} // namespace
} // namespace amberquill::desktop
