#pragma once

#include "platform/linux/applications/icons/UndecodableList.h"

#include <mutex>
#include <string>

namespace amberquill::desktop {

// Remembers, over the end of the process, which files cannot be decoded, so that no start tries them again:
// until they change, or the program does. Several processes may use one file; where it cannot be written,
// this process remembers all the same. Safe on any thread; reads and writes on the disk, so not for the main
// one.
class UndecodableFiles {
public:
    // Nothing is read before the first question. `version`: the program's.
    UndecodableFiles(std::string path, std::string version);

    [[nodiscard]] bool contains(const FileState& file);
    void add(const FileState& file);

private:
    [[nodiscard]] UndecodableList read() const;
    void readOnce();

    const std::string path_;
    const std::string version_;
    std::once_flag isRead_;
    std::mutex mutex_;
    UndecodableList list_; // guarded by the mutex
    std::mutex writing_;   // one at a time
};

} // namespace amberquill::desktop
