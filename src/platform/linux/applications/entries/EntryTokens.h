#pragma once

#include "platform/linux/applications/entries/EntryLocale.h"

#include <QByteArrayView>
#include <QString>
#include <QStringList>
#include <array>
#include <optional>

// The parser of the file format, for complete entries (DesktopEntry) and for scans, which need few values.
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

// The values of the `[Desktop Entry]` group as in the file, without the white space around them; of a
// localized key, the translation that is wanted most. They point into the file's bytes.
class EntryTokens {
public:
    // None: the key is absent. A value that is not UTF-8, or has a NUL in it, counts as absent. Of a repeated
    // key the last one counts.
    [[nodiscard]] std::optional<QByteArrayView> raw(EntryKey key) const;

    // With the escapes undone: `\s` `\n` `\t` `\r` `\\`; other backslashes are literal. Empty: absent.
    [[nodiscard]] QString text(EntryKey key) const;

    // The parts between semicolons; `\;` is a literal semicolon. Empty parts are left out.
    [[nodiscard]] std::optional<QStringList> list(EntryKey key) const;

    // `true` and `false`, in old files `1` and `0`; anything else counts as absent.
    [[nodiscard]] std::optional<bool> boolean(EntryKey key) const;
    [[nodiscard]] bool isTrue(EntryKey key) const { return boolean(key).value_or(false); }

    // Why this is not a valid entry of an application, which has a type, a name and a way to be started. For
    // the log. Null: it is valid.
    [[nodiscard]] const char* invalidReason() const;
    [[nodiscard]] bool isValidApplication() const { return invalidReason() == nullptr; }

private:
    friend std::optional<EntryTokens> tokenizeEntry(QByteArrayView bytes, const EntryLocale& locale);

    std::array<QByteArrayView, entryKeyCount> values_; // null: absent
};

// None: `[Desktop Entry]` is not the first group, or the file goes over one of the bounds in DesktopEntry.h.
// Skips unknown keys, and lines that are no comment, group or `key=value`.
[[nodiscard]] std::optional<EntryTokens> tokenizeEntry(QByteArrayView bytes, const EntryLocale& locale);

} // namespace amberquill::desktop
