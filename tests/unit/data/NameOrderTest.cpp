#include "data/NameOrder.h"

#include <gtest/gtest.h>

using namespace amberquill;
using namespace Qt::StringLiterals;

namespace {

QStringList sorted(const std::vector<QString>& names, const QLocale& locale = QLocale(QLocale::English)) {
    QStringList result;
    for (const std::size_t position : NameOrder(locale).order(names)) {
        result.append(names[position]);
    }
    return result;
}

} // namespace

TEST(NameOrder, DigitsSortAsNumbers) {
    EXPECT_EQ(sorted({u"App 10"_s, u"App 9"_s, u"App 1"_s}),
              (QStringList{u"App 1"_s, u"App 9"_s, u"App 10"_s}));
}

TEST(NameOrder, LetterCaseDoesNotMatter) {
    EXPECT_EQ(sorted({u"beta"_s, u"Gamma"_s, u"alpha"_s}), (QStringList{u"alpha"_s, u"beta"_s, u"Gamma"_s}));
    EXPECT_EQ(NameOrder(QLocale(QLocale::English)).compare(u"NOTES"_s, u"notes"_s), 0);
}

TEST(NameOrder, EqualNamesKeepTheirOrder) {
    EXPECT_EQ(sorted({u"same"_s, u"Same"_s, u"SAME"_s}), (QStringList{u"same"_s, u"Same"_s, u"SAME"_s}));
}

TEST(NameOrder, TheCLocaleSortsAsEnglishAndNotAsBytes) {
    const std::vector<QString> names = {u"b"_s, u"Ä"_s, u"A 10"_s, u"a 9"_s, u"C"_s};
    EXPECT_EQ(sorted(names, QLocale::c()), sorted(names, QLocale(QLocale::English)));
    EXPECT_EQ(sorted(names, QLocale::c()), (QStringList{u"Ä"_s, u"a 9"_s, u"A 10"_s, u"b"_s, u"C"_s}));
}

TEST(NameOrder, AKeyComparesAsItsNameDoes) {
    const NameOrder order{QLocale(QLocale::English)};
    const QStringList names = {u"App 9"_s, u"app 10"_s, u"Zeta"_s, u"éclair"_s, u"日本"_s, u""_s, u"App 9"_s};
    for (const QString& a : names) {
        for (const QString& b : names) {
            const int byKey = order.key(a).compare(order.key(b));
            const int byName = order.compare(a, b);
            EXPECT_EQ(byKey < 0, byName < 0);
            EXPECT_EQ(byKey > 0, byName > 0);
        }
    }
}
