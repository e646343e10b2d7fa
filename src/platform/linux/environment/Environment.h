// platform/linux/environment/: reads the environment variables. `Environment` is a function, so that tests
// pass their own variables.
//
// Parts: Environment, the look-up. BaseFolders: the XDG Base Directory Specification, i.e. the home folder,
// the user's folders, the data folders of all applications, and the launcher's own Locations.
// QtSystemLanguages: the languages of the locale variables.
//
// Rules: paths are absolute and without repeated or trailing slashes; a variable with a relative path counts
// as unset. Nothing here checks whether a folder exists. Any thread.
#pragma once

#include <QByteArray>
#include <functional>
#include <optional>

namespace amberquill::desktop {

// Looks up an environment variable. None: it is not set.
using Environment = std::function<std::optional<QByteArray>(const char* name)>;

// The environment of this process.
[[nodiscard]] Environment processEnvironment();

} // namespace amberquill::desktop
