#pragma once

#include "platform/linux/files/FileDescriptor.h"

#include <QByteArray>
#include <QByteArrayView>
#include <optional>

namespace amberquill::desktop {

// Reads the whole of a regular file into `buffer`, which only ever grows, so that reading many files with the
// same one allocates little. `path` is absolute, or relative to the open folder `folder`. The answer points
// into the buffer. None: missing, unreadable, not a regular file (a pipe or a device is not waited for), or
// larger than `limit` bytes; errno says which. Symbolic links are followed. Any thread.
[[nodiscard]] std::optional<QByteArrayView> readRegularFile(int folder, const char* path, qsizetype limit,
                                                            QByteArray& buffer);

// The same in two steps, for whoever wants to know more of the very file that is read. Not open: errno says
// why; a pipe or a device may be.
[[nodiscard]] FileDescriptor openForReading(int folder, const char* path);
[[nodiscard]] std::optional<QByteArrayView> readRegularFile(const FileDescriptor& file, qsizetype limit,
                                                            QByteArray& buffer);

} // namespace amberquill::desktop
