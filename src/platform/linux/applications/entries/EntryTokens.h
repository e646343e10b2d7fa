#pragma once

#include "platform/linux/applications/entries/EntryLocale.h"

#include <QByteArrayView>
#include <QString>
#include <QStringList>
#include <array>
#include <optional>

// The one reader of the file format, below both the full entry and the quick look that a scan takes.
namespace amberquill::desktop {

enum class EntryKey {
    Type,
    Name,
    Exec,
    TryExec,
    Icon,
    Path,
    StartupWmClass,
    OnlyShowIn,
    NotShowIn,
    StartupNotify,
    Terminal,
    DbusActivatable,
    NoDisplay,
    Hidden,
    GnomeAutostartEnabled,
};
inline constexpr std::size_t entryKeyCount = static_cast<std::size_t>(EntryKey::GnomeAutostartEnabled) + 1;

// The values of the `[Desktop Entry]` group as they stand in the file, without the white space around them;
// of a localized key, the translation that is wanted most. They point into the file's bytes.
class EntryTokens {
public:
    // None: the key is not there. A value that is not UTF-8, or has a NUL in it, counts as not there. Of a
    // key that stands there twice, the later counts.
    [[nodiscard]] std::optional<QByteArrayView> raw(EntryKey key) const;

    // With the escapes undone: `\s` `\n` `\t` `\r` `\\`; other backslashes stand for themselves. Empty: not
    // there.
    [[nodiscard]] QString text(EntryKey key) const;

    // The parts between semicolons, where `\;` is a semicolon that does not divide. Empty parts do not count.
    [[nodiscard]] std::optional<QStringList> list(EntryKey key) const;

    // `true` and `false`, in old files `1` and `0`; anything else counts as not there.
    [[nodiscard]] std::optional<bool> boolean(EntryKey key) const;
    [[nodiscard]] bool isTrue(EntryKey key) const { return boolean(key).value_or(false); }

    // An application's entry that has all it needs: its type, a name, and a way to be started.
    [[nodiscard]] bool isValidApplication() const;

private:
    friend std::optional<EntryTokens> tokenizeEntry(QByteArrayView bytes, const EntryLocale& locale);

    std::array<QByteArrayView, entryKeyCount> values_; // null: not there
};

// None: `[Desktop Entry]` is not the first group, or the file goes over one of the bounds in DesktopEntry.h.
// Lines that are neither a comment nor a group nor `key=value` are passed over, and so are unknown keys.
[[nodiscard]] std::optional<EntryTokens> tokenizeEntry(QByteArrayView bytes, const EntryLocale& locale);

} // namespace amberquill::desktop
