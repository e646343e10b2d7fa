#pragma once

#include "platform/linux/applications/entries/EntryLocale.h"

#include <QByteArrayView>
#include <QString>
#include <QStringList>
#include <optional>

namespace amberquill::desktop {

// The `[Desktop Entry]` group of an application's file by the Desktop Entry Specification 1.5. String escapes
// are undone; nothing else is: `exec` still has its quoting and its field codes, and no value is evaluated.
// An empty text is a key that is not there, has nothing in it, or is not UTF-8.
struct DesktopEntry {
    QString name; // in the language asked for; never empty
    QString exec; // empty only where `dbusActivatable`
    QString tryExec;
    QString icon; // a theme's icon name or an absolute path, in the language asked for
    QString path; // the working directory
    QString startupWmClass;
    std::optional<QStringList> onlyShowIn; // none: the key is not there
    std::optional<QStringList> notShowIn;
    std::optional<bool> startupNotify;
    bool terminal = false;
    bool dbusActivatable = false;
    bool noDisplay = false;
    bool hidden = false; // deleted by the user: counts as not installed

    bool operator==(const DesktopEntry&) const = default;
};

// None: not a valid entry of an application (another `Type`, no `Name`, neither `Exec` nor `DBusActivatable`,
// another group first), or over one of the bounds below. Hidden ones are answered.
[[nodiscard]] std::optional<DesktopEntry> parseDesktopEntry(QByteArrayView bytes, const EntryLocale& locale);

// The same for a file. None also: it cannot be read, or is not a regular file. Never blocks on a pipe.
[[nodiscard]] std::optional<DesktopEntry> readDesktopEntry(const QString& path, const EntryLocale& locale);

// Going over one of these makes the entry invalid.
inline constexpr qsizetype maximumEntryBytes = qsizetype{1024} * 1024;
inline constexpr qsizetype maximumEntryLineBytes = qsizetype{64} * 1024;
inline constexpr int maximumEntryKeys = 10'000;
inline constexpr int maximumEntryLines = 50'000; // of the group, with empty ones, comments and what is before

} // namespace amberquill::desktop
