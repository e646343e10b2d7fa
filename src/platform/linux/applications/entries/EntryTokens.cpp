#include "platform/linux/applications/entries/EntryTokens.h"

#include "platform/common/Utf8.h"
#include "platform/linux/applications/entries/DesktopEntry.h"

#include <cstring>
#include <limits>

namespace amberquill::desktop {
namespace {

struct KeyName {
    QByteArrayView name;
    EntryKey key = EntryKey::Type;
    bool isLocalized = false;
};

constexpr std::array<KeyName, entryKeyCount> keyNames = {{
    {"Type", EntryKey::Type},
    {"Name", EntryKey::Name, true},
    {"Exec", EntryKey::Exec},
    {"TryExec", EntryKey::TryExec},
    {"Icon", EntryKey::Icon, true},
    {"Path", EntryKey::Path},
    {"StartupWMClass", EntryKey::StartupWmClass},
    {"OnlyShowIn", EntryKey::OnlyShowIn},
    {"NotShowIn", EntryKey::NotShowIn},
    {"StartupNotify", EntryKey::StartupNotify},
    {"Terminal", EntryKey::Terminal},
    {"DBusActivatable", EntryKey::DbusActivatable},
    {"NoDisplay", EntryKey::NoDisplay},
    {"Hidden", EntryKey::Hidden},
    {"X-GNOME-Autostart-enabled", EntryKey::GnomeAutostartEnabled},
}};

// Most lines are translations of unused keys. Checking the first letter skips them fast.
constexpr std::array<bool, 256> initialsOf(const std::array<KeyName, entryKeyCount>& names) {
    std::array<bool, 256> initials = {};
    for (const KeyName& known : names) {
        initials[static_cast<unsigned char>(known.name[0])] = true;
    }
    return initials;
}
constexpr std::array<bool, 256> initials = initialsOf(keyNames);

constexpr bool isBlank(char byte) {
    return byte == ' ' || (byte >= '\t' && byte <= '\r');
}

QByteArrayView withoutBlanksBefore(QByteArrayView text) {
    while (!text.isEmpty() && isBlank(text.front())) {
        text = text.sliced(1);
    }
    return text;
}

QByteArrayView withoutBlanksAfter(QByteArrayView text) {
    while (!text.isEmpty() && isBlank(text.back())) {
        text.chop(1);
    }
    return text;
}

QByteArrayView withoutMark(QByteArrayView bytes) {
    constexpr QByteArrayView byteOrderMark("\xEF\xBB\xBF");
    return bytes.startsWith(byteOrderMark) ? bytes.sliced(byteOrderMark.size()) : bytes;
}

const KeyName* keyNamed(QByteArrayView name) {
    const auto* const found = std::find_if(keyNames.begin(), keyNames.end(),
                                           [&](const KeyName& known) { return known.name == name; });
    return found == keyNames.end() ? nullptr : found;
}

// The character for a backslash and this letter, in all kinds of values.
std::optional<char> escaped(char letter) {
    switch (letter) {
    case 's':
        return ' ';
    case 'n':
        return '\n';
    case 't':
        return '\t';
    case 'r':
        return '\r';
    case '\\':
        return '\\';
    default:
        return std::nullopt;
    }
}

QString withoutEscapes(QByteArrayView value) {
    if (!value.contains('\\')) {
        return textOfUtf8(value);
    }
    QByteArray text;
    text.reserve(value.size());
    for (qsizetype at = 0; at < value.size(); ++at) {
        const auto meant = value[at] == '\\' && at + 1 < value.size() ? escaped(value[at + 1]) : std::nullopt;
        text.append(meant.value_or(value[at]));
        at += meant ? 1 : 0;
    }
    return textOfUtf8(text);
}

// Reads the values, line by line.
class Tokenizer {
public:
    using Values = std::array<QByteArrayView, entryKeyCount>;

    Tokenizer(const EntryLocale& locale, Values& values)
        : locale_(locale)
        , values_(values) {
        ranks_.fill(std::numeric_limits<std::size_t>::max());
    }

    // False: not an entry.
    bool read(QByteArrayView bytes) {
        if (bytes.size() > maximumEntryBytes) {
            return false;
        }
        bytes = withoutMark(bytes);
        const char* at = bytes.begin();
        while (at != bytes.end() && state_ != State::AfterGroup) {
            const auto left = static_cast<std::size_t>(bytes.end() - at);
            const auto* const newline = static_cast<const char*>(std::memchr(at, '\n', left));
            const char* const end = newline == nullptr ? bytes.end() : newline;
            if (end - at > maximumEntryLineBytes || ++lines_ > maximumEntryLines || !readLine({at, end})) {
                return false;
            }
            at = newline == nullptr ? end : end + 1;
        }
        return state_ != State::BeforeGroup;
    }

private:
    enum class State { BeforeGroup, InGroup, AfterGroup };

    bool readLine(QByteArrayView line) {
        line = withoutBlanksBefore(line);
        if (line.isEmpty() || line.front() == '#') {
            return true;
        }
        if (line.front() == '[') {
            if (state_ == State::InGroup) {
                state_ = State::AfterGroup;
                return true;
            }
            state_ = State::InGroup;
            return withoutBlanksAfter(line) == "[Desktop Entry]";
        }
        if (state_ != State::InGroup || ++keys_ > maximumEntryKeys) {
            return false;
        }
        if (initials[static_cast<unsigned char>(line.front())]) {
            readKey(line);
        }
        return true;
    }

    void readKey(QByteArrayView line) {
        const qsizetype equals = line.indexOf('=');
        if (equals < 0) {
            return;
        }
        QByteArrayView name = withoutBlanksAfter(line.first(equals));
        std::size_t rank = locale_.suffixes.size(); // the untranslated key comes last
        if (name.endsWith(']')) {
            const qsizetype bracket = name.indexOf('[');
            const auto wanted =
                bracket < 0 ? std::nullopt : locale_.rank(name.sliced(bracket + 1).chopped(1));
            if (!wanted) {
                return;
            }
            rank = *wanted;
            name.truncate(bracket);
        }
        const KeyName* const known = keyNamed(name);
        if (known != nullptr && (known->isLocalized || rank == locale_.suffixes.size())) {
            take(*known, rank, withoutBlanksAfter(withoutBlanksBefore(line.sliced(equals + 1))));
        }
    }

    void take(const KeyName& known, std::size_t rank, QByteArrayView value) {
        const auto index = static_cast<std::size_t>(known.key);
        // An empty translation counts as absent.
        const bool isEmptyTranslation = known.isLocalized && value.isEmpty();
        if (rank <= ranks_[index] && !isEmptyTranslation && value.isValidUtf8() && !value.contains('\0')) {
            ranks_[index] = rank;
            values_[index] = value;
        }
    }

    const EntryLocale& locale_;
    Values& values_;
    std::array<std::size_t, entryKeyCount> ranks_ = {}; // of the values so far
    State state_ = State::BeforeGroup;
    int keys_ = 0;
    int lines_ = 0;
};

} // namespace

std::optional<QByteArrayView> EntryTokens::raw(EntryKey key) const {
    const QByteArrayView value = values_[static_cast<std::size_t>(key)];
    return value.isNull() ? std::nullopt : std::optional(value);
}

QString EntryTokens::text(EntryKey key) const {
    return withoutEscapes(raw(key).value_or(QByteArrayView()));
}

std::optional<QStringList> EntryTokens::list(EntryKey key) const {
    const auto value = raw(key);
    if (!value) {
        return std::nullopt;
    }
    QStringList parts;
    QByteArray part;
    const auto finishPart = [&] {
        if (!part.isEmpty()) {
            parts.append(textOfUtf8(part));
        }
        part.clear();
    };
    for (qsizetype at = 0; at < value->size(); ++at) {
        const char byte = (*value)[at];
        if (byte == ';') {
            finishPart();
        } else if (byte == '\\' && at + 1 < value->size()) {
            const char letter = (*value)[++at];
            if (const auto meant = letter == ';' ? letter : escaped(letter)) {
                part.append(*meant);
            } else {
                part.append(byte).append(letter);
            }
        } else {
            part.append(byte);
        }
    }
    finishPart();
    return parts;
}

std::optional<bool> EntryTokens::boolean(EntryKey key) const {
    const auto value = raw(key);
    if (value == QByteArrayView("true") || value == QByteArrayView("1")) {
        return true;
    }
    if (value == QByteArrayView("false") || value == QByteArrayView("0")) {
        return false;
    }
    return std::nullopt;
}

const char* EntryTokens::invalidReason() const {
    if (raw(EntryKey::Type) != QByteArrayView("Application")) {
        return "Type is not Application";
    }
    if (text(EntryKey::Name).trimmed().isEmpty()) {
        return "no Name";
    }
    const bool hasExec = !raw(EntryKey::Exec).value_or(QByteArrayView()).isEmpty();
    return hasExec || isTrue(EntryKey::DbusActivatable) ? nullptr : "neither Exec nor DBusActivatable";
}

std::optional<EntryTokens> tokenizeEntry(QByteArrayView bytes, const EntryLocale& locale) {
    EntryTokens tokens;
    if (!Tokenizer(locale, tokens.values_).read(bytes)) {
        return std::nullopt;
    }
    return tokens;
}

} // namespace amberquill::desktop
