#include "data/NameOrder.h"

#include <QtEndian>
#include <algorithm>
#include <array>
#include <cstdint>
#include <iterator>
#include <string>
#include <string_view>
#include <utility>

namespace amberquill {

namespace {

constexpr char16_t firstPrintable = u' ';
constexpr char16_t lastPrintable = u'~';

// The collator splits longer numbers.
constexpr qsizetype longestNumber = 254;

bool isDigit(char16_t unit) {
    return unit >= u'0' && unit <= u'9';
}

QLocale sortingLocale(const QLocale& locale) {
    return locale.language() == QLocale::C ? QLocale(QLocale::English, QLocale::UnitedStates) : locale;
}

// ASCII names are sorted separately if at most one name in so many is not ASCII.
constexpr std::size_t fewOthers = 8;

// The ASCII names of a list. All keys are in one text.
class AsciiNames {
public:
    explicit AsciiNames(std::size_t mostNames) { names_.reserve(mostNames); }

    // False: the name is not ASCII.
    bool add(std::size_t position, const QString& name, const AsciiOrder& order) {
        const std::size_t start = keys_.size();
        if (!order.appendKey(name, keys_)) {
            keys_.resize(start);
            return false;
        }
        const std::size_t size = keys_.size() - start;
        names_.push_back({prefixOf(start, size), start, size, position});
        return true;
    }

    [[nodiscard]] std::vector<std::size_t> sorted() && {
        std::sort(names_.begin(), names_.end(), [this](const Name& a, const Name& b) {
            if (a.prefix != b.prefix) {
                return a.prefix < b.prefix;
            }
            const int order = key(a).compare(key(b));
            return order < 0 || (order == 0 && a.position < b.position);
        });
        std::vector<std::size_t> positions(names_.size());
        std::transform(names_.begin(), names_.end(), positions.begin(),
                       [](const Name& name) { return name.position; });
        return positions;
    }

private:
    struct Name {
        std::uint64_t prefix; // the first bytes of the key: enough to order most names
        std::size_t start;
        std::size_t size;
        std::size_t position;
    };

    [[nodiscard]] std::string_view key(const Name& name) const {
        return std::string_view(keys_).substr(name.start, name.size);
    }

    [[nodiscard]] std::uint64_t prefixOf(std::size_t start, std::size_t size) const {
        std::array<char, sizeof(std::uint64_t)> bytes = {};
        std::copy_n(keys_.data() + start, std::min(size, bytes.size()), bytes.data());
        return qFromBigEndian<std::uint64_t>(bytes.data());
    }

    std::string keys_;
    std::vector<Name> names_;
};

} // namespace

bool AsciiOrder::suits(const QLocale& locale) {
    switch (locale.language()) {
    case QLocale::English:
    case QLocale::German:
    case QLocale::French:
    case QLocale::Italian:
    case QLocale::Spanish:
    case QLocale::Portuguese:
    case QLocale::Dutch:
    case QLocale::Russian:
    case QLocale::Chinese:
    case QLocale::Japanese:
    case QLocale::Korean:
        return true;
    default:
        return false;
    }
}

AsciiOrder::AsciiOrder(const QCollator& collator) {
    std::array<QChar, lastPrintable - firstPrintable + 1> characters;
    for (std::size_t i = 0; i < characters.size(); ++i) {
        characters.at(i) = QChar(static_cast<char16_t>(firstPrintable + i));
    }
    const auto compare = [&collator](QChar a, QChar b) { return collator.compare(QString(a), QString(b)); };
    std::stable_sort(characters.begin(), characters.end(),
                     [&compare](QChar a, QChar b) { return compare(a, b) < 0; });
    unsigned char weight = 1;
    for (std::size_t i = 0; i < characters.size(); ++i) {
        if (i > 0 && compare(characters.at(i - 1), characters.at(i)) != 0) {
            ++weight;
        }
        weights_.at(characters.at(i).unicode()) = weight;
    }
}

bool AsciiOrder::appendKey(const QString& name, std::string& keys) const {
    const QChar* unit = name.constData();
    const QChar* const end = unit + name.size();
    while (unit != end) {
        const char16_t character = unit->unicode();
        if (character >= weights_.size() || weights_[character] == 0) {
            return false;
        }
        if (!isDigit(character)) {
            keys += static_cast<char>(weights_[character]);
            ++unit;
            continue;
        }
        // A number: the weight of digits, how many there are without leading zeros, and the digits.
        while (unit + 1 != end && unit->unicode() == u'0' && isDigit(unit[1].unicode())) {
            ++unit;
        }
        const QChar* const number = unit;
        while (unit != end && isDigit(unit->unicode())) {
            ++unit;
        }
        if (unit - number > longestNumber) {
            return false;
        }
        keys += static_cast<char>(weights_[u'0']);
        keys += static_cast<char>(unit - number);
        std::transform(number, unit, std::back_inserter(keys),
                       [](QChar digit) { return static_cast<char>(digit.unicode()); });
    }
    return true;
}

NameOrder::NameOrder()
    : NameOrder(QLocale::system().collation()) {}

NameOrder::NameOrder(const QLocale& locale)
    : collator_(sortingLocale(locale)) {
    collator_.setCaseSensitivity(Qt::CaseInsensitive);
    collator_.setNumericMode(true);
    if (AsciiOrder::suits(collator_.locale())) {
        ascii_.emplace(collator_);
    }
}

std::vector<std::size_t> NameOrder::order(const std::vector<QString>& names) const {
    AsciiNames ascii(names.size());
    std::vector<std::size_t> others;
    for (std::size_t position = 0; position < names.size(); ++position) {
        if (!ascii_ || !ascii.add(position, names[position], *ascii_)) {
            others.push_back(position);
        }
    }
    std::vector<std::size_t> sorted = std::move(ascii).sorted();
    // Merging takes several slow comparisons for each name that is not ASCII.
    if (others.size() > names.size() / fewOthers) {
        others.insert(others.end(), sorted.begin(), sorted.end());
        std::sort(others.begin(), others.end());
        return orderByKeys(names, std::move(others));
    }
    const auto comesBefore = [this, &names](std::size_t a, std::size_t b) {
        const int order = compare(names[a], names[b]);
        return order < 0 || (order == 0 && a < b);
    };
    std::vector<std::size_t> merged;
    merged.reserve(names.size());
    auto next = sorted.begin();
    for (const std::size_t other : orderByKeys(names, std::move(others))) {
        const auto place = std::upper_bound(next, sorted.end(), other, comesBefore);
        merged.insert(merged.end(), next, place);
        merged.push_back(other);
        next = place;
    }
    merged.insert(merged.end(), next, sorted.end());
    return merged;
}

std::vector<std::size_t> NameOrder::orderByKeys(const std::vector<QString>& names,
                                                std::vector<std::size_t> positions) const {
    struct Keyed {
        QCollatorSortKey key;
        std::size_t position;
    };
    std::vector<Keyed> keyed;
    keyed.reserve(positions.size());
    for (const std::size_t position : positions) {
        keyed.push_back({key(names[position]), position});
    }
    std::stable_sort(keyed.begin(), keyed.end(),
                     [](const Keyed& a, const Keyed& b) { return a.key.compare(b.key) < 0; });
    std::transform(keyed.begin(), keyed.end(), positions.begin(),
                   [](const Keyed& each) { return each.position; });
    return positions;
}

} // namespace amberquill
