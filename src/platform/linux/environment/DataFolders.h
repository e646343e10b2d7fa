#pragma once

#include "platform/linux/environment/Environment.h"

#include <QStringList>

namespace amberquill::desktop {

// The folders that programs share their data in, by the XDG Base Directory Specification: highest precedence
// first, absolute, without trailing slashes or repetitions. They need not exist.
struct DataFolders {
    QStringList folders;

    // `name` below each of them, in the same order: `below("applications")`.
    [[nodiscard]] QStringList below(QStringView name) const;

    bool operator==(const DataFolders&) const = default;
};

// $XDG_DATA_HOME, then $XDG_DATA_DIRS, then what Flatpak and Snap export, where the variables lack it.
[[nodiscard]] DataFolders dataFoldersFromEnvironment(const Environment& environment);

} // namespace amberquill::desktop
