#include "platform/linux/graphics/RenderNodes.h"

#include "platform/linux/files/FileDescriptor.h"

#include <array>
#include <climits>
#include <cstdint>
#include <dirent.h>
#include <fcntl.h>
#include <memory>
#include <string_view>
#include <sys/ioctl.h>
#include <unistd.h>

namespace amberquill::desktop {
namespace {

// Far more than a machine has.
constexpr std::size_t mostNodes = 64;

// The kernel's interface to the two virtual GPUs whose 3D is optional, as in virtgpu_drm.h and vmwgfx_drm.h.
struct VirtioParameter {
    std::uint64_t parameter;
    std::uint64_t value; // the address of an int
};
struct VmwareParameter {
    std::uint64_t value;
    std::uint32_t parameter;
    std::uint32_t padding;
};
constexpr unsigned driverCommands = 0x40;
constexpr auto virtioGetParameter = _IOWR('d', driverCommands + 0x03, VirtioParameter);
constexpr auto vmwareGetParameter = _IOWR('d', driverCommands + 0x00, VmwareParameter);
constexpr std::uint64_t virtio3dFeatures = 1;
constexpr std::uint32_t vmware3d = 2;

[[nodiscard]] bool virtioRenders3d(int device) {
    int value = 0;
    VirtioParameter request{virtio3dFeatures, reinterpret_cast<std::uintptr_t>(&value)};
    return ioctl(device, virtioGetParameter, &request) == 0 && value != 0;
}

[[nodiscard]] bool vmwareRenders3d(int device) {
    VmwareParameter request{0, vmware3d, 0};
    return ioctl(device, vmwareGetParameter, &request) == 0 && request.value != 0;
}

[[nodiscard]] bool renders3d(const std::string& device, std::string_view driver) {
    const bool isVirtio = driver == "virtio_gpu" || driver == "virtio-pci";
    const bool isVmware = driver == "vmwgfx";
    if (!isVirtio && !isVmware) {
        return true;
    }
    const FileDescriptor node(open(device.c_str(), O_RDWR | O_CLOEXEC | O_NONBLOCK | O_NOCTTY));
    return node.isOpen() && (isVirtio ? virtioRenders3d(node.get()) : vmwareRenders3d(node.get()));
}

[[nodiscard]] std::string below(std::string folder, const std::string& name) {
    folder += '/';
    folder += name;
    return folder;
}

[[nodiscard]] std::string driverName(const std::string& driverLink) {
    std::array<char, PATH_MAX> target{};
    const auto length = readlink(driverLink.c_str(), target.data(), target.size());
    if (length <= 0) {
        return {};
    }
    const std::string path(target.data(), static_cast<std::size_t>(length));
    return path.substr(path.rfind('/') + 1);
}

} // namespace

std::vector<RenderNode> renderNodes(const std::string& devices, const std::string& classes) {
    std::vector<RenderNode> nodes;
    const std::unique_ptr<DIR, int (*)(DIR*)> folder(opendir(devices.c_str()), closedir);
    if (!folder) {
        return nodes;
    }
    constexpr std::string_view prefix = "renderD";
    while (const dirent* entry = readdir(folder.get())) { // NOLINT(concurrency-mt-unsafe)
        const std::string name(static_cast<const char*>(entry->d_name));
        if (name.compare(0, prefix.size(), prefix) != 0 || nodes.size() == mostNodes) {
            continue;
        }
        const std::string device = below(devices, name);
        const std::string driver = driverName(below(classes, name) + "/device/driver");
        nodes.push_back({.driver = QByteArray::fromStdString(driver),
                         .mayBeOpened = access(device.c_str(), R_OK | W_OK) == 0,
                         .renders3d = renders3d(device, driver)});
    }
    return nodes;
}

} // namespace amberquill::desktop
