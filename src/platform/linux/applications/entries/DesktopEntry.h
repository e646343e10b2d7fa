#pragma once

#include "platform/linux/applications/entries/EntryLocale.h"

#include <QByteArrayView>
#include <QString>
#include <QStringList>
#include <optional>

namespace amberquill::desktop {

// The `[Desktop Entry]` group of an application's file by the Desktop Entry Specification 1.5. String escapes
// are undone, but `exec` still has its quoting and field codes. A text is empty if the key is absent, empty
// or not UTF-8.
struct DesktopEntry {
    QString name; // translated; never empty
    QString exec; // may be empty only if `dbusActivatable`
    QString tryExec;
    QString icon; // a theme's icon name or an absolute path, translated
    QString path; // the working directory
    QString startupWmClass;
    std::optional<QStringList> onlyShowIn; // none: the key is absent
    std::optional<QStringList> notShowIn;
    std::optional<bool> startupNotify;
    bool terminal = false;
    bool dbusActivatable = false;
    bool noDisplay = false;
    bool hidden = false; // deleted by the user: counts as not installed

    bool operator==(const DesktopEntry&) const = default;
};

// None: not a valid entry of an application (another `Type`, no `Name`, neither `Exec` nor `DBusActivatable`,
// another group first), or over a bound below. Hidden entries are valid.
[[nodiscard]] std::optional<DesktopEntry> parseDesktopEntry(QByteArrayView bytes, const EntryLocale& locale);

// The same for a file. None also if it cannot be read, or is not a regular file. Never blocks on a pipe.
[[nodiscard]] std::optional<DesktopEntry> readDesktopEntry(const QString& path, const EntryLocale& locale);

// The bounds. An entry over one of them is invalid.
inline constexpr qsizetype maximumEntryBytes = qsizetype{1024} * 1024;
inline constexpr qsizetype maximumEntryLineBytes = qsizetype{64} * 1024;
inline constexpr int maximumEntryKeys = 10'000;
inline constexpr int maximumEntryLines = 50'000; // up to the group's end, with empty lines and comments

} // namespace amberquill::desktop
