#pragma once

#include "platform/linux/files/FileDescriptor.h"

#include <QByteArray>
#include <QByteArrayView>
#include <optional>

namespace amberquill::desktop {

// Reads a whole regular file into `buffer` and returns a view of that buffer. The buffer never shrinks, so
// reading many files with one buffer allocates little. `path` is absolute, or relative to the open folder
// `folder`. None: missing, unreadable, not a regular file (never waits for a pipe or a device), or larger
// than `limit` bytes; errno is set. Symbolic links are followed. Any thread.
[[nodiscard]] std::optional<QByteArrayView> readRegularFile(int folder, const char* path, qsizetype limit,
                                                            QByteArray& buffer);

// The same in two steps, for callers that also need other facts about the opened file. Not open: errno is
// set. The opened file may be a pipe or a device; the second function refuses those.
[[nodiscard]] FileDescriptor openForReading(int folder, const char* path);
[[nodiscard]] std::optional<QByteArrayView> readRegularFile(const FileDescriptor& file, qsizetype limit,
                                                            QByteArray& buffer);

} // namespace amberquill::desktop
