#pragma once

#include "data/AsciiOrder.h"

#include <QCollator>
#include <QLocale>
#include <QString>
#include <optional>
#include <vector>

namespace amberquill {

// How names are sorted for a person: by the rules of the user's language, letter case aside, digits as
// numbers. The C locale sorts as English does, not as bytes. Costs some milliseconds to make once in a
// process.
class NameOrder {
public:
    NameOrder();
    explicit NameOrder(const QLocale& locale);

    // Whose rules they are: never the C locale.
    [[nodiscard]] QLocale locale() const { return collator_.locale(); }

    // A name's place, to be made once and compared often.
    [[nodiscard]] QCollatorSortKey key(const QString& name) const { return collator_.sortKey(name); }

    [[nodiscard]] int compare(const QString& a, const QString& b) const { return collator_.compare(a, b); }

    // The positions of `names` in ascending order; equal names keep their order.
    [[nodiscard]] std::vector<std::size_t> order(const std::vector<QString>& names) const;

private:
    [[nodiscard]] std::vector<std::size_t> orderByKeys(const std::vector<QString>& names,
                                                       std::vector<std::size_t> positions) const;

    QCollator collator_;
    std::optional<AsciiOrder> ascii_; // none: the language does not allow it
};

} // namespace amberquill
