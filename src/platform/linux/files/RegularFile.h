#pragma once

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

} // namespace amberquill::desktop
