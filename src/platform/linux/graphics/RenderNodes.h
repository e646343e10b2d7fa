#pragma once

#include "platform/linux/graphics/GraphicsFindings.h"

#include <string>
#include <vector>

namespace amberquill::desktop {

// The render nodes in the folder `devices` (/dev/dri), with their drivers as in the folder `classes`
// (/sys/class/drm). Opens only GPUs of virtual machines: opening wakes a GPU that is powered down, which
// takes a good part of a second.
[[nodiscard]] std::vector<RenderNode> renderNodes(const std::string& devices, const std::string& classes);

} // namespace amberquill::desktop
