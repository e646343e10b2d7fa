#include "data/NameOrder.h"

#include <algorithm>
#include <numeric>

namespace amberquill {

namespace {

QLocale sortingLocale(const QLocale& locale) {
    return locale.language() == QLocale::C ? QLocale(QLocale::English, QLocale::UnitedStates) : locale;
}

} // namespace

NameOrder::NameOrder()
    : NameOrder(QLocale::system().collation()) {}

NameOrder::NameOrder(const QLocale& locale)
    : collator_(sortingLocale(locale)) {
    collator_.setCaseSensitivity(Qt::CaseInsensitive);
    collator_.setNumericMode(true);
}

std::vector<std::size_t> NameOrder::order(const std::vector<QString>& names) const {
    std::vector<QCollatorSortKey> keys;
    keys.reserve(names.size());
    for (const QString& name : names) {
        keys.push_back(key(name));
    }
    std::vector<std::size_t> positions(names.size());
    std::iota(positions.begin(), positions.end(), std::size_t{0});
    std::stable_sort(positions.begin(), positions.end(),
                     [&keys](std::size_t a, std::size_t b) { return keys[a].compare(keys[b]) < 0; });
    return positions;
}

} // namespace amberquill
