#pragma once

#include "platform/Locations.h"
#include "platform/linux/environment/Environment.h"

#include <QByteArrayView>
#include <QString>
#include <QStringList>
#include <optional>

// The rules that the variables of the XDG Base Directory Specification share.

namespace amberquill::desktop {

// The path as the program writes it: no repeated, no trailing slashes. None: relative, not UTF-8, or with a
// NUL in it.
[[nodiscard]] std::optional<QString> absolutePath(QByteArrayView path);

// `name` in `folder`; either may have several components.
[[nodiscard]] QString pathBelow(const QString& folder, QStringView name);

// $HOME, else what the user database says, else "/".
[[nodiscard]] QString homeFolder(const Environment& environment);

// Where the user of this name is at home, by the user database; none: no such user. May ask a server.
[[nodiscard]] std::optional<QString> homeFolderOfUser(const QString& name);

// The folder that `variable` names; unset, empty or relative: `fallback` below the home folder.
[[nodiscard]] QString baseFolder(const Environment& environment, const char* variable, QStringView fallback);

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

// The path of the program that runs, links resolved; empty where the system does not tell.
[[nodiscard]] QString runningProgram();

// Where things are kept by the XDG Base Directory Specification. A variable that is unset, empty or relative
// stands for its default. `program` is the running program's path: the nearest `*.app` folder around it is
// the launcher's own bundle.
[[nodiscard]] Locations locationsFromEnvironment(const Environment& environment,
                                                 const QString& program = runningProgram());

} // namespace amberquill::desktop
