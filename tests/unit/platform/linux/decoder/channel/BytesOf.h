#pragma once

#include <cstddef>
#include <span>
#include <string_view>

namespace amberquill::desktop {

inline std::span<const std::byte> bytesOf(std::string_view text) {
    return std::as_bytes(std::span(text));
}

} // namespace amberquill::desktop
