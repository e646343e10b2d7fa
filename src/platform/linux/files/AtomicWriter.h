// Replaces whole files by way of temporary files, and renames files out of the way. Paths are absolute and
// UTF-8. Any thread.
//
// Not QSaveFile: it ignores a failed flush to the disk, refuses a read-only file and reports no error code.
// If the process is killed, it leaves a file "layout.json.XXXXXX". Such a file could be the user's, so no
// later start may remove it.
#pragma once

#include "platform/FileSystem.h"
#include "platform/linux/files/FileDescriptor.h"

#include <QByteArray>
#include <QString>
#include <optional>
#include <sys/types.h>
#include <system_error>

namespace amberquill::desktop {

// Whether the system can open the path: it is absolute and has no NUL.
[[nodiscard]] bool isUsablePath(const QString& path);

// FileSystem::writeAtomically. On an error nothing has changed, and no temporary file remains.
[[nodiscard]] std::error_code replaceFile(const QByteArray& path, const QByteArray& content,
                                          NewFile newFile = NewFile::UserOnly);

// FileSystem::setAside.
[[nodiscard]] bool renameToFreeName(const QByteArray& path);

// A new file with a hidden, random name. It is locked while it is open, so `removeLeftoverFiles` keeps it.
struct TemporaryFile {
    QByteArray path;
    FileDescriptor file;
};

// Makes a temporary file in `folder`. The umask applies to `mode`. None: errno is set.
[[nodiscard]] std::optional<TemporaryFile> makeTemporaryFile(const QByteArray& folder, mode_t mode);

// Removes the temporary files that killed processes have left in `folder`: files of such a name that belong
// to this user and that no process has locked. In a folder with very many files, some remain until the next
// call.
void removeLeftoverFiles(const QByteArray& folder);

} // namespace amberquill::desktop
