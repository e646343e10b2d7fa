#include "data/NameOrder.h"

#include <algorithm>
#include <gtest/gtest.h>
#include <numeric>
#include <random>

using namespace amberquill;
using namespace Qt::StringLiterals;

namespace {

const std::vector<QLocale::Language> languages = {QLocale::English,  QLocale::German,  QLocale::French,
                                                  QLocale::Italian,  QLocale::Spanish, QLocale::Portuguese,
                                                  QLocale::Dutch,    QLocale::Russian, QLocale::Chinese,
                                                  QLocale::Japanese, QLocale::Korean};

QCollator collatorOf(QLocale::Language language) {
    QCollator collator{QLocale(language)};
    collator.setCaseSensitivity(Qt::CaseInsensitive);
    collator.setNumericMode(true);
    return collator;
}

std::optional<std::string> key(const AsciiOrder& order, const QString& name) {
    std::string key;
    return order.appendKey(name, key) ? std::optional(key) : std::nullopt;
}

QString randomAscii(std::mt19937& random) {
    // A few characters are frequent, so that many names are similar.
    static const QString often = u"aAbB01 -."_s;
    QString name;
    for (auto length = random() % 8; length > 0; --length) {
        name += random() % 2 == 0
                    ? often[static_cast<qsizetype>(random() % static_cast<unsigned long>(often.size()))]
                    : QChar(static_cast<char16_t>(u' ' + random() % 95));
    }
    return name;
}

int sign(int number) {
    return (number > 0) - (number < 0);
}

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

TEST(NameOrder, LetterCaseIsIgnored) {
    EXPECT_EQ(sorted({u"beta"_s, u"Gamma"_s, u"alpha"_s}), (QStringList{u"alpha"_s, u"beta"_s, u"Gamma"_s}));
    EXPECT_EQ(NameOrder(QLocale(QLocale::English)).compare(u"NOTES"_s, u"notes"_s), 0);
}

TEST(NameOrder, EqualNamesKeepTheirOrder) {
    EXPECT_EQ(sorted({u"same"_s, u"Same"_s, u"SAME"_s}), (QStringList{u"same"_s, u"Same"_s, u"SAME"_s}));
}

TEST(NameOrder, TheCLocaleSortsLikeEnglish) {
    const std::vector<QString> names = {u"b"_s, u"Ä"_s, u"A 10"_s, u"a 9"_s, u"C"_s};
    EXPECT_EQ(sorted(names, QLocale::c()), sorted(names, QLocale(QLocale::English)));
    EXPECT_EQ(sorted(names, QLocale::c()), (QStringList{u"Ä"_s, u"a 9"_s, u"A 10"_s, u"b"_s, u"C"_s}));
}

TEST(NameOrder, KeysCompareLikeNames) {
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

TEST(AsciiOrder, KeysCompareLikeTheCollatorInEverySuitableLanguage) {
    std::mt19937 random(4);
    for (const QLocale::Language language : languages) {
        ASSERT_TRUE(AsciiOrder::suits(QLocale(language)));
        const QCollator collator = collatorOf(language);
        const AsciiOrder order(collator);
        for (int round = 0; round < 20'000; ++round) {
            const QString a = randomAscii(random);
            const QString b = randomAscii(random);
            EXPECT_EQ(sign(key(order, a)->compare(*key(order, b))), sign(collator.compare(a, b)))
                << QLocale::languageToString(language).toStdString() << ": \"" << a.toStdString() << "\", \""
                << b.toStdString() << '"';
        }
    }
}

TEST(AsciiOrder, SuitableLanguagesSortEveryPairAsTwoLetters) {
    for (const QLocale::Language language : languages) {
        const QCollator collator = collatorOf(language);
        const AsciiOrder order(collator);
        std::vector<QString> pairs;
        for (char16_t a = u'a'; a <= u'z'; ++a) {
            pairs.push_back(QString(QChar(a)));
            for (char16_t b = u'a'; b <= u'z'; ++b) {
                pairs.push_back(QString(QChar(a)) + QChar(b));
            }
        }
        for (std::size_t i = 1; i < pairs.size(); ++i) {
            EXPECT_LT(collator.compare(pairs[i - 1], pairs[i]), 0) << pairs[i].toStdString();
            EXPECT_LT(key(order, pairs[i - 1]), key(order, pairs[i])) << pairs[i].toStdString();
        }
    }
}

TEST(AsciiOrder, LanguagesThatSortPairsAsOneLetterDoNotSuit) {
    for (const auto language :
         {QLocale::Czech, QLocale::Danish, QLocale::Hungarian, QLocale::Welsh, QLocale::Turkish}) {
        EXPECT_FALSE(AsciiOrder::suits(QLocale(language)));
    }
}

TEST(AsciiOrder, NumbersCompareByValueWithoutLeadingZeros) {
    const AsciiOrder order(collatorOf(QLocale::English));
    EXPECT_LT(key(order, u"App 9"_s), key(order, u"App 10"_s));
    EXPECT_EQ(key(order, u"App 007"_s), key(order, u"app 7"_s));
    EXPECT_EQ(key(order, u"0"_s), key(order, u"000"_s));
    EXPECT_LT(key(order, QString(253, u'9')), key(order, QString(254, u'1')));
}

TEST(AsciiOrder, OtherCharactersAndTooLongNumbersHaveNoKey) {
    const AsciiOrder order(collatorOf(QLocale::English));
    for (const QString& name :
         {u"Écran"_s, u"tab\t"_s, u"\u007f"_s, u"a\u0000"_s, u"日本"_s, QString(255, u'1')}) {
        EXPECT_EQ(key(order, name), std::nullopt) << name.toStdString();
    }
    EXPECT_NE(key(order, QString(300, u'0') + u'1'), std::nullopt);
    EXPECT_EQ(key(order, QString()), "");
}

TEST(NameOrder, AnyNamesAreSortedLikeByComparisonsInAnyLanguage) {
    std::mt19937 random(6);
    const QStringList others = {u"É"_s,  u"ä"_s,      u"ß"_s,  u"日"_s, u"Ж"_s,
                                u"ａ"_s, u"\u00ad"_s, u"ch"_s, u"aa"_s, u"\t"_s};
    for (const QLocale& locale :
         {QLocale(QLocale::English), QLocale(QLocale::German), QLocale(QLocale::Czech),
          QLocale(QLocale::Danish), QLocale(QLocale::Japanese), QLocale::c()}) {
        const NameOrder order(locale);
        for (const unsigned share : {0U, 3U, 30U, 100U}) {
            for (int round = 0; round < 40; ++round) {
                std::vector<QString> names;
                for (auto count = random() % 60; count > 0; --count) {
                    // No name is empty: there the collator's keys and comparisons differ.
                    QString name = u'n' + randomAscii(random);
                    if (random() % 100 < share) {
                        name += others[static_cast<qsizetype>(random() %
                                                              static_cast<unsigned long>(others.size()))];
                    }
                    names.push_back(name);
                }
                std::vector<std::size_t> expected(names.size());
                std::iota(expected.begin(), expected.end(), std::size_t{0});
                std::stable_sort(expected.begin(), expected.end(), [&](std::size_t a, std::size_t b) {
                    return order.compare(names[a], names[b]) < 0;
                });
                EXPECT_EQ(order.order(names), expected) << locale.name().toStdString();
            }
        }
    }
}
