// platform/linux/settings/: the settings of the user's desktop that the launcher follows: reduced motion, and
// for applications/ the icon theme. Desktops store them in different places, so each place has a reader.
//
// Parts:
// - DesktopSettings: which desktop runs, where its files are, and the value of a key in an ini-like file.
// - DconfDatabase: GNOME's database, read as a file. PortalSettings: org.freedesktop.portal.Settings.
// - MotionSettings (pure): the rule for reduced motion. LinuxMotionPreference reads and watches its sources.
//
// Rules: files are untrusted: sizes are limited and offsets checked. The portal is never started and never
// waited for. Log: amberquill.settings.
#pragma once

#include "platform/linux/environment/Environment.h"

#include <QLoggingCategory>
#include <QString>
#include <QStringList>
#include <optional>
#include <string>
#include <string_view>

namespace amberquill::desktop {

Q_DECLARE_LOGGING_CATEGORY(settingsLog)

// The names of the running desktop, the most specific first ($XDG_CURRENT_DESKTOP).
[[nodiscard]] QStringList currentDesktops(const Environment& environment);

// The user's folder for settings, then the system's.
[[nodiscard]] QStringList configurationFolders(const Environment& environment);

// KDE's global settings files; the first one that has a key decides. `configuration`: configurationFolders().
[[nodiscard]] QStringList kdeSettingsFiles(const QStringList& configuration);

// The whole of a settings file. None: missing, not a regular file, unreadable, or over four mebibytes.
[[nodiscard]] std::optional<std::string> settingsContent(const QString& path);

// The trimmed value of the first line "key = value" in the group "[group]" of a settings file's text. A
// marker after the key, as in "key[$i]", is ignored.
[[nodiscard]] std::optional<std::string_view> settingsValue(std::string_view content, std::string_view group,
                                                            std::string_view key);

} // namespace amberquill::desktop
