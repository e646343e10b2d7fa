#include "platform/linux/files/FolderReader.h"

#include <cerrno>
#include <fcntl.h>
#include <sys/stat.h>

namespace amberquill::desktop {

FolderReader::FolderReader(FileDescriptor folder) {
    if (folder.isOpen()) {
        stream_.reset(::fdopendir(folder.get()));
        if (stream_) {
            static_cast<void>(folder.release()); // the stream closes it
        }
    }
}

std::optional<FolderReader::Child> FolderReader::next() {
    while (true) {
        errno = 0;
        const dirent* const found = ::readdir(stream_.get());
        if (found == nullptr) {
            failed_ = errno != 0;
            return std::nullopt;
        }
        const Child child{.name = std::begin(found->d_name), .type = found->d_type};
        if (child.nameView() != "." && child.nameView() != "..") {
            return child;
        }
    }
}

unsigned char FolderReader::typeOf(const Child& child) const {
    if (child.type != DT_UNKNOWN) {
        return child.type;
    }
    struct stat status = {};
    if (::fstatat(descriptor(), child.name, &status, AT_SYMLINK_NOFOLLOW) != 0) {
        return DT_UNKNOWN;
    }
    return static_cast<unsigned char>(IFTODT(status.st_mode));
}

FileDescriptor openFolder(int at, const char* path, int extraFlags) {
    return FileDescriptor(::openat(at, path, O_RDONLY | O_DIRECTORY | O_CLOEXEC | O_NONBLOCK | extraFlags));
}

} // namespace amberquill::desktop
