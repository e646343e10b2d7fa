#pragma once

#include "platform/linux/graphics/GraphicsFindings.h"

#include <string>
#include <vector>

namespace amberquill::desktop {

// The render nodes in a folder of devices (/dev/dri) with what a folder of the kernel's (/sys/class/drm) says
// of their drivers. Does not open a device but a virtual machine's: opening wakes a GPU that is powered down,
// which takes a good part of a second.
[[nodiscard]] std::vector<RenderNode> renderNodes(const std::string& devices, const std::string& classes);

} // namespace amberquill::desktop
