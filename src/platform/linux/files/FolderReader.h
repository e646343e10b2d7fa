#pragma once

#include "platform/linux/files/FileDescriptor.h"

#include <dirent.h>
#include <memory>
#include <optional>
#include <string_view>

namespace amberquill::desktop {

// Goes through an open folder, name by name in the disk's own order, without "." and "..".
class FolderReader {
public:
    struct Child {
        const char* name;   // as on the disk, valid until the next one is asked for
        unsigned char type; // DT_REG, DT_DIR, DT_LNK, …; DT_UNKNOWN where the file system does not tell
        [[nodiscard]] std::string_view nameView() const { return name; }
    };

    // Takes the folder over. A descriptor that is no folder's: `isOpen` is false.
    explicit FolderReader(FileDescriptor folder);

    [[nodiscard]] bool isOpen() const { return stream_ != nullptr; }

    // The folder, for calls relative to it.
    [[nodiscard]] int descriptor() const { return ::dirfd(stream_.get()); }

    // The next name, or none at the end; `failed` tells an end from an error.
    [[nodiscard]] std::optional<Child> next();
    [[nodiscard]] bool failed() const { return failed_; }

    // What the child is, asked of the disk where the listing did not tell (DT_UNKNOWN, when that fails too).
    // Symbolic links are not followed.
    [[nodiscard]] unsigned char typeOf(const Child& child) const;

private:
    struct Close {
        void operator()(DIR* stream) const { ::closedir(stream); }
    };
    std::unique_ptr<DIR, Close> stream_;
    bool failed_ = false;
};

// Opens a folder for reading, or answers a descriptor that is not open. `path` is absolute, or relative to
// the open folder `at`. `extraFlags`: O_NOFOLLOW, where a symbolic link is not wanted.
[[nodiscard]] FileDescriptor openFolder(int at, const char* path, int extraFlags = 0);

} // namespace amberquill::desktop
