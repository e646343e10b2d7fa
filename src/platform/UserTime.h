#pragma once

#include <cstdint>

namespace amberquill {

// When the user pressed a key or a button, as the window system counts it. Opaque: only platform/linux/ makes
// and reads these values.
enum class UserTime : std::uint32_t {};

} // namespace amberquill
