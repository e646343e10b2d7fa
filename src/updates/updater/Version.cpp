#include "updates/updater/Version.h"

#include <algorithm>

namespace amberquill {
namespace {

enum class Kind { Letters, Number }; // older first

struct Part {
    Kind kind = Kind::Number;
    QStringView text; // a number has no leading zeros, so that zero is empty
};

bool isDigit(QChar character) {
    return character >= QLatin1Char('0') && character <= QLatin1Char('9');
}

// Removes the first part from the text. At the end of the text it is zero.
Part takePart(QStringView& rest) {
    const auto* const start =
        std::find_if(rest.begin(), rest.end(), [](QChar c) { return isDigit(c) || c.isLetter(); });
    if (start == rest.end()) {
        rest = {};
        return {};
    }
    const Kind kind = isDigit(*start) ? Kind::Number : Kind::Letters;
    const auto* const end = std::find_if_not(
        start, rest.end(), [kind](QChar c) { return kind == Kind::Number ? isDigit(c) : c.isLetter(); });
    QStringView text(start, end);
    rest = QStringView(end, rest.end());
    while (kind == Kind::Number && text.startsWith(QLatin1Char('0'))) {
        text = text.mid(1);
    }
    return {kind, text};
}

std::weak_ordering compareParts(const Part& a, const Part& b) {
    if (a.kind != b.kind) {
        return a.kind <=> b.kind;
    }
    if (a.kind == Kind::Number && a.text.size() != b.text.size()) {
        return a.text.size() <=> b.text.size();
    }
    return a.text.compare(b.text, Qt::CaseInsensitive) <=> 0;
}

} // namespace

std::weak_ordering compareVersions(QStringView a, QStringView b) {
    while (!a.isEmpty() || !b.isEmpty()) {
        const Part partOfA = takePart(a);
        const Part partOfB = takePart(b);
        if (const auto order = compareParts(partOfA, partOfB); std::is_neq(order)) {
            return order;
        }
    }
    return std::weak_ordering::equivalent;
}

} // namespace amberquill
