#pragma once

#include "platform/linux/environment/Environment.h"

#include <QByteArray>
#include <optional>
#include <vector>

namespace amberquill::desktop {

// Which of a localized key's translations is wanted, computed once for many entries. The default value wants
// the untranslated ones only.
struct EntryLocale {
    // Of keys such as `Name[de_AT]`, what stands between the brackets: most wanted first, without
    // repetitions.
    std::vector<QByteArray> suffixes;

    // The place of a key's suffix among those wanted (0 is the best), or none: not wanted.
    [[nodiscard]] std::optional<std::size_t> rank(QByteArrayView suffix) const;

    bool operator==(const EntryLocale&) const = default;
};

// From locale names `lang_COUNTRY.ENCODING@MODIFIER`, most wanted first. `C` and `POSIX` want the
// untranslated key and so end the list.
[[nodiscard]] EntryLocale entryLocaleFor(const QByteArrayList& localeNames);

// The user's choice: LANGUAGE (a colon list), else LC_ALL, LC_MESSAGES or LANG, whichever is first and not
// empty.
[[nodiscard]] EntryLocale entryLocaleFromEnvironment(const Environment& environment);

} // namespace amberquill::desktop
