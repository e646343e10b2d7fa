#pragma once

#include "platform/linux/files/FileDescriptor.h"

#include <cstdint>
#include <optional>
#include <string>

namespace amberquill::desktop {

// A regular file as it was at one time: when it changes, so does this.
struct FileState {
    std::string path;
    std::int64_t modified = 0; // nanoseconds since 1970
    std::int64_t size = 0;     // bytes

    bool operator==(const FileState&) const = default;
};

// Of the file that is open there. None: it is not a regular file.
[[nodiscard]] std::optional<FileState> fileState(const FileDescriptor& file, const std::string& path);

} // namespace amberquill::desktop
