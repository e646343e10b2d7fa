#pragma once

#include "platform/linux/files/FileDescriptor.h"

#include <dirent.h>
#include <memory>
#include <optional>
#include <string_view>

namespace amberquill::desktop {

// Lists an open folder in the disk's order, without "." and "..".
class FolderReader {
public:
    struct Child {
        const char* name;   // as on the disk, valid until the next call of next()
        unsigned char type; // DT_REG, DT_DIR, DT_LNK, …; DT_UNKNOWN: the file system does not tell
        [[nodiscard]] std::string_view nameView() const { return name; }
    };

    // Owns `folder` from now on. `isOpen` is false if the descriptor is not a folder's.
    explicit FolderReader(FileDescriptor folder);

    [[nodiscard]] bool isOpen() const { return stream_ != nullptr; }

    // The folder, for calls relative to it.
    [[nodiscard]] int descriptor() const { return ::dirfd(stream_.get()); }

    // The next name. None: the end, or an error if `failed` is true.
    [[nodiscard]] std::optional<Child> next();
    [[nodiscard]] bool failed() const { return failed_; }

    // The child's type. Asks the disk if the listing did not tell; DT_UNKNOWN if that fails, too. Symbolic
    // links are not followed.
    [[nodiscard]] unsigned char typeOf(const Child& child) const;

private:
    struct Close {
        void operator()(DIR* stream) const { ::closedir(stream); }
    };
    std::unique_ptr<DIR, Close> stream_;
    bool failed_ = false;
};

// Opens a folder for reading; the result is not open on an error. `path` is absolute, or relative to the open
// folder `at`. `extraFlags`: O_NOFOLLOW to refuse symbolic links.
[[nodiscard]] FileDescriptor openFolder(int at, const char* path, int extraFlags = 0);

} // namespace amberquill::desktop
