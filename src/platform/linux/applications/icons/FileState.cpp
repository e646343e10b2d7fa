#include "platform/linux/applications/icons/FileState.h"

#include <sys/stat.h>

namespace amberquill::desktop {

std::optional<FileState> fileState(const FileDescriptor& file, const std::string& path) {
    struct stat status = {};
    if (::fstat(file.get(), &status) != 0 || !S_ISREG(status.st_mode)) {
        return std::nullopt;
    }
    constexpr std::int64_t nanoseconds = 1'000'000'000;
    return FileState{.path = path,
                     .modified = status.st_mtim.tv_sec * nanoseconds + status.st_mtim.tv_nsec,
                     .size = status.st_size};
}

} // namespace amberquill::desktop
