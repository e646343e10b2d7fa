#pragma once

#include <QCollator>
#include <QLocale>
#include <QString>
#include <array>
#include <string>

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

} // namespace amberquill
