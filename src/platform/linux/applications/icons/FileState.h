#pragma once

#include <compare>
#include <cstdint>
#include <optional>
#include <string>

namespace amberquill::desktop {

// A regular file as it was at one time: when it changes, so does this.
struct FileState {
    std::string path;
    std::int64_t modified = 0; // nanoseconds since 1970
    std::int64_t size = 0;     // bytes

    // NOLINTNEXTLINE(modernize-use-nullptr): the check takes what the compiler makes here for a null pointer
    auto operator<=>(const FileState&) const = default;
};

// None: there is no regular file (symbolic links are followed).
[[nodiscard]] std::optional<FileState> fileState(const std::string& path);

} // namespace amberquill::desktop
