#pragma once

#include "platform/linux/files/FileDescriptor.h"

#include <QByteArray>
#include <optional>
#include <sys/types.h>

// The files under which new content is written before it takes a file's place. Paths are absolute and UTF-8.
// Any thread.
namespace amberquill::desktop {

// A file under a hidden name of its own. While it is open it is locked: no start takes it for a left-over
// one.
struct TemporaryFile {
    QByteArray path;
    FileDescriptor file;
};

// Makes one in `folder`, with this mode as far as the umask lets. None: errno says why not.
[[nodiscard]] std::optional<TemporaryFile> makeTemporaryFile(const QByteArray& folder, mode_t mode);

// Removes what processes that were killed in the middle of a save have left in `folder`: files of the user's
// under such a name that no process has locked. Others are not touched. Of a folder with very many files, the
// rest is left to the next time.
void removeLeftoverFiles(const QByteArray& folder);

} // namespace amberquill::desktop
