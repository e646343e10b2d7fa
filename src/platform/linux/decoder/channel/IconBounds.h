#pragma once

#include <cstdint>

namespace amberquill::desktop {

// The largest file that is read as an icon, in bytes.
inline constexpr std::int64_t largestIconBytes = std::int64_t{8} * 1024 * 1024;

// The largest picture that is made of one, in device pixels each way.
inline constexpr int largestIconEdge = 4096;

} // namespace amberquill::desktop
