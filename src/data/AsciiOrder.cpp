#include "data/AsciiOrder.h"

#include <algorithm>

namespace amberquill {

namespace {

constexpr char16_t firstPrintable = u' ';
constexpr char16_t lastPrintable = u'~';

// Longer numbers the library takes apart.
constexpr qsizetype longestNumber = 254;

bool isDigit(char16_t unit) {
    return unit >= u'0' && unit <= u'9';
}

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

} // namespace amberquill
