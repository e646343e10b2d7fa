#pragma once

#include "platform/linux/environment/Environment.h"

#include <QByteArray>
#include <optional>
#include <vector>

namespace amberquill::desktop {

// The translations of localized keys that are wanted, computed once for many entries. The default value wants
// only untranslated values.
struct EntryLocale {
    // The texts between the brackets of keys such as `Name[de_AT]`: most wanted first, each once.
    std::vector<QByteArray> suffixes;

    // The index of a key's suffix in `suffixes` (0 is the best). None: not wanted.
    [[nodiscard]] std::optional<std::size_t> rank(QByteArrayView suffix) const;

    bool operator==(const EntryLocale&) const = default;
};

// From locale names `lang_COUNTRY.ENCODING@MODIFIER`, most wanted first. The list ends at `C` or `POSIX`,
// which stand for the untranslated value.
[[nodiscard]] EntryLocale entryLocaleFor(const QByteArrayList& localeNames);

// The user's choice: LANGUAGE (a colon list), else LC_ALL, LC_MESSAGES or LANG, whichever is first and not
// empty.
[[nodiscard]] EntryLocale entryLocaleFromEnvironment(const Environment& environment);

} // namespace amberquill::desktop
