#include "platform/linux/applications/entries/EntryLocale.h"

#include <QByteArrayList>
#include <algorithm>

namespace amberquill::desktop {
namespace {

// Each localized key of each file is compared with the suffixes, so their number is limited.
constexpr std::size_t maximumSuffixes = 64;

struct LocaleName {
    QByteArray language;
    QByteArray country;  // with its underscore, or empty
    QByteArray modifier; // with its at sign, or empty
};

// The parts of `lang_COUNTRY.ENCODING@MODIFIER` without the encoding, which keys do not have.
LocaleName partsOf(QByteArray name) {
    LocaleName parts;
    if (const qsizetype at = name.indexOf('@'); at >= 0) {
        parts.modifier = name.mid(at);
        name.truncate(at);
    }
    if (const qsizetype dot = name.indexOf('.'); dot >= 0) {
        name.truncate(dot);
    }
    if (const qsizetype underscore = name.indexOf('_'); underscore >= 0) {
        parts.country = name.mid(underscore);
        name.truncate(underscore);
    }
    parts.language = name;
    return parts;
}

} // namespace

std::optional<std::size_t> EntryLocale::rank(QByteArrayView suffix) const {
    const auto found = std::find(suffixes.begin(), suffixes.end(), suffix);
    if (found == suffixes.end()) {
        return std::nullopt;
    }
    return static_cast<std::size_t>(found - suffixes.begin());
}

EntryLocale entryLocaleFor(const QByteArrayList& localeNames) {
    EntryLocale locale;
    const auto want = [&](const QByteArray& suffix) {
        if (locale.suffixes.size() < maximumSuffixes && !locale.rank(suffix)) {
            locale.suffixes.push_back(suffix);
        }
    };
    for (const QByteArray& name : localeNames) {
        const LocaleName parts = partsOf(name);
        if (parts.language == "C" || parts.language == "POSIX") {
            break;
        }
        if (parts.language.isEmpty()) {
            continue;
        }
        if (!parts.country.isEmpty() && !parts.modifier.isEmpty()) {
            want(parts.language + parts.country + parts.modifier);
        }
        if (!parts.country.isEmpty()) {
            want(parts.language + parts.country);
        }
        if (!parts.modifier.isEmpty()) {
            want(parts.language + parts.modifier);
        }
        want(parts.language);
    }
    return locale;
}

EntryLocale entryLocaleFromEnvironment(const Environment& environment) {
    if (const auto languages = environment("LANGUAGE"); languages && !languages->isEmpty()) {
        return entryLocaleFor(languages->split(':'));
    }
    for (const char* const variable : {"LC_ALL", "LC_MESSAGES", "LANG"}) {
        if (const auto name = environment(variable); name && !name->isEmpty()) {
            return entryLocaleFor({*name});
        }
    }
    return {};
}

} // namespace amberquill::desktop
