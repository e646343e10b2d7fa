// platform/linux/settings/: how desktops keep their users' settings in files.
#pragma once

#include "platform/linux/environment/Environment.h"

#include <QLoggingCategory>
#include <QStringList>

namespace amberquill::desktop {

Q_DECLARE_LOGGING_CATEGORY(settingsLog)

// The names of the running desktop, the most particular first ($XDG_CURRENT_DESKTOP).
[[nodiscard]] QStringList currentDesktops(const Environment& environment);

// The user's folder for settings, then the system's.
[[nodiscard]] QStringList configurationFolders(const Environment& environment);

// KDE's files of settings for everything, the first that has a key wins. `configuration` as above.
[[nodiscard]] QStringList kdeSettingsFiles(const QStringList& configuration);

} // namespace amberquill::desktop
