#pragma once

#include <QCollator>
#include <QLocale>
#include <QString>
#include <array>
#include <cstddef>
#include <optional>
#include <string>
#include <vector>

namespace amberquill {

// The order of a collator for names of nothing but printable ASCII, whose keys cost a tenth of the library's:
// they are made of one weight for each character, letter case aside, and of the values of numbers.
class AsciiOrder {
public:
    // Whether the language puts ASCII letters in an order of single letters. Others sort some pairs as one
    // ("ch", "aa"), which these keys cannot say.
    [[nodiscard]] static bool suits(const QLocale& locale);

    // Takes the weights from the collator, which sorts numerically and regardless of case.
    explicit AsciiOrder(const QCollator& collator);

    // Appends the name's key to `keys`: keys compare byte by byte as their names do, a key that another
    // begins with coming first. False: the name has other characters or longer numbers; what was appended is
    // no key.
    [[nodiscard]] bool appendKey(const QString& name, std::string& keys) const;

private:
    std::array<unsigned char, 128> weights_ = {}; // 0: not printable
};

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
