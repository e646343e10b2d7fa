#pragma once

#include <cstdint>

namespace amberquill::desktop {

// The maximum size of an icon file.
inline constexpr std::int64_t maximumIconBytes = std::int64_t{8} * 1024 * 1024;

// The maximum size of a decoded picture, in device pixels each way.
inline constexpr int maximumIconEdge = 4096;

} // namespace amberquill::desktop
