#pragma once

#include "platform/linux/environment/Environment.h"

#include <QByteArrayView>
#include <QString>
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

} // namespace amberquill::desktop
