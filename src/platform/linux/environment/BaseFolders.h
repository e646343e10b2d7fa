#pragma once

#include "platform/Locations.h"
#include "platform/linux/environment/Environment.h"

#include <QByteArrayView>
#include <QString>
#include <QStringList>
#include <optional>

// The rules that the variables of the XDG Base Directory Specification share.

namespace amberquill::desktop {

// The path without repeated or trailing slashes. None: relative, not UTF-8, or contains a NUL.
[[nodiscard]] std::optional<QString> absolutePath(QByteArrayView path);

// `name` in `folder`; either may have several components.
[[nodiscard]] QString pathBelow(const QString& folder, QStringView name);

// $HOME, else the home folder in the user database, else "/".
[[nodiscard]] QString homeFolder(const Environment& environment);

// The home folder of a user by the user database; none: no such user. May ask a server.
[[nodiscard]] std::optional<QString> homeFolderOfUser(const QString& name);

// The folder that `variable` names; unset, empty or relative: `fallback` below the home folder.
[[nodiscard]] QString baseFolder(const Environment& environment, const char* variable, QStringView fallback);

// The data folders of the XDG Base Directory Specification: highest precedence first, absolute, without
// trailing slashes or duplicates. They need not exist.
struct DataFolders {
    QStringList folders;

    // `name` below each of them, in the same order: `below("applications")`.
    [[nodiscard]] QStringList below(QStringView name) const;

    bool operator==(const DataFolders&) const = default;
};

// $XDG_DATA_HOME, then $XDG_DATA_DIRS, then the folders of Flatpak and Snap if the variables lack them.
[[nodiscard]] DataFolders dataFoldersFromEnvironment(const Environment& environment);

// The path of the running program, links resolved; empty if the system does not tell.
[[nodiscard]] QString runningProgram();

// The launcher's folders by the XDG Base Directory Specification. A variable that is unset, empty or relative
// counts as its default. `program` is the running program's path: the nearest `*.app` folder above it is the
// launcher's own bundle.
[[nodiscard]] Locations locationsFromEnvironment(const Environment& environment,
                                                 const QString& program = runningProgram());

} // namespace amberquill::desktop
