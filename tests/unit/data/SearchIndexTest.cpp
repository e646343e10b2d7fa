#include "data/SearchIndex.h"

#include "data/NameOrder.h"

#include <algorithm>
#include <gtest/gtest.h>
#include <random>

using namespace amberquill;
using namespace Qt::StringLiterals;

namespace {

QStringList found(const QStringList& names, const QString& text,
                  const QLocale& locale = QLocale(QLocale::English, QLocale::UnitedStates)) {
    std::vector<AppInfo> apps;
    for (const QString& name : names) {
        apps.push_back({u"/note/%1.app"_s.arg(apps.size()), name});
    }
    QStringList result;
    for (const std::size_t position : SearchIndex(apps, NameOrder(locale)).find(text)) {
        result.append(names[static_cast<qsizetype>(position)]);
    }
    return result;
}

} // namespace

TEST(SearchIndex, NamesThatStartWithTheTextComeFirst) {
    EXPECT_EQ(found({u"Sticky Notes"_s, u"Notes"_s, u"Chess"_s, u"Notebook"_s}, u"note"_s),
              (QStringList{u"Notebook"_s, u"Notes"_s, u"Sticky Notes"_s}));
}

TEST(SearchIndex, TheStartOfANameIsComparedInLowerCase) {
    EXPECT_EQ(found({u"Straße"_s, u"Strasse"_s, u"A Strasse"_s}, u"stras"_s),
              (QStringList{u"Strasse"_s, u"A Strasse"_s, u"Straße"_s}));
}

TEST(SearchIndex, BothGroupsAreInTheOrderOfNames) {
    EXPECT_EQ(found({u"My App 10"_s, u"App 10"_s, u"My App 9"_s, u"App 9"_s}, u"app"_s),
              (QStringList{u"App 9"_s, u"App 10"_s, u"My App 9"_s, u"My App 10"_s}));
}

TEST(SearchIndex, EqualNamesKeepTheOrderOfTheApplications) {
    const std::vector<AppInfo> apps = {{u"/2"_s, u"same"_s}, {u"/1"_s, u"Same"_s}, {u"/3"_s, u"SAME"_s}};
    const SearchIndex index(apps, NameOrder(QLocale(QLocale::English)));
    EXPECT_EQ(index.find(u"same"_s), (std::vector<std::size_t>{0, 1, 2}));
}

TEST(SearchIndex, LetterCaseIsIgnoredInAnyAlphabet) {
    EXPECT_EQ(found({u"Écran"_s, u"ТЕРМИНАЛ"_s, u"Straße"_s}, u"éCRAN"_s), QStringList{u"Écran"_s});
    EXPECT_EQ(found({u"Écran"_s, u"ТЕРМИНАЛ"_s, u"Straße"_s}, u"терминал"_s), QStringList{u"ТЕРМИНАЛ"_s});
    EXPECT_EQ(found({u"Écran"_s, u"ТЕРМИНАЛ"_s, u"Straße"_s}, u"STRASSE"_s), QStringList{u"Straße"_s});
    EXPECT_EQ(found({u"ΧΆΡΤΗΣ"_s}, u"χάρτης"_s), QStringList{u"ΧΆΡΤΗΣ"_s});
    EXPECT_EQ(found({u"İstanbul"_s}, u"İST"_s), QStringList{u"İstanbul"_s});
}

TEST(SearchIndex, AnAccentedLetterDiffersInBothUnicodeForms) {
    EXPECT_EQ(found({u"Cafe\u0301"_s, u"Cafeteria"_s}, u"caf\u00e9"_s), QStringList{u"Cafe\u0301"_s});
    EXPECT_EQ(found({u"Caf\u00e9"_s}, u"cafe\u0301"_s), QStringList{u"Caf\u00e9"_s});
    EXPECT_EQ(found({u"Caf\u00e9"_s}, u"cafe"_s), QStringList());
}

TEST(SearchIndex, DottedAndDotlessIDifferOnlyInTurkish) {
    const QStringList names = {u"Işık"_s, u"İstanbul"_s, u"internet"_s};
    const QLocale turkish(QLocale::Turkish);
    EXPECT_EQ(found(names, u"i"_s, turkish), (QStringList{u"internet"_s, u"İstanbul"_s}));
    EXPECT_EQ(found(names, u"IŞIK"_s, turkish), QStringList{u"Işık"_s});
    EXPECT_EQ(found({u"Internet"_s}, u"INTERNET"_s, turkish), QStringList{u"Internet"_s});
    EXPECT_EQ(found({u"internet"_s}, u"INTERNET"_s, turkish), QStringList());
    EXPECT_EQ(found({u"internet"_s}, u"INTERNET"_s), QStringList{u"internet"_s});
}

TEST(SearchIndex, OnlyWhiteSpaceAroundTheTextIsIgnored) {
    EXPECT_EQ(found({u"Notes Viewer"_s, u"NotesViewer"_s}, u" \t\n\u3000notes v \u00a0"_s),
              QStringList{u"Notes Viewer"_s});
}

TEST(SearchIndex, WhiteSpaceAloneFindsNothing) {
    EXPECT_EQ(found({u"Notes"_s, u" "_s, u""_s}, QString()), QStringList());
    EXPECT_EQ(found({u"Notes"_s, u" "_s, u""_s}, u" \n\u2028 "_s), QStringList());
}

TEST(SearchIndex, PathsAreNotSearched) {
    EXPECT_EQ(found({u"Chess"_s}, u"note"_s), QStringList());
    EXPECT_EQ(found({u"Chess"_s}, u".app"_s), QStringList());
}

TEST(SearchIndex, AMatchAcrossTwoNamesDoesNotCount) {
    EXPECT_EQ(found({u"ab"_s, u"cd"_s, u"d"_s}, u"bc"_s), QStringList());
    EXPECT_EQ(found({u"aa"_s, u"ab"_s}, u"aaa"_s), QStringList());
    // After a match across two names the search continues at the next byte.
    EXPECT_EQ(found({u"xa"_s, u"aab"_s}, u"aab"_s), QStringList{u"aab"_s});
}

TEST(SearchIndex, TheCLocaleSearchesLikeEnglish) {
    const QStringList names = {u"b Éa"_s, u"App 10"_s, u"app 9"_s, u"Écran"_s};
    for (const QString& text : {u"a"_s, u"é"_s, u"APP"_s}) {
        EXPECT_EQ(found(names, text, QLocale::c()), found(names, text, QLocale(QLocale::English)));
    }
    EXPECT_EQ(found(names, u"APP"_s, QLocale::c()), (QStringList{u"app 9"_s, u"App 10"_s}));
}

TEST(SearchIndex, AnEmptyIndexFindsNothing) {
    EXPECT_TRUE(SearchIndex().find(u"a"_s).empty());
    EXPECT_EQ(found({}, u"a"_s), QStringList());
}

TEST(SearchIndex, FindsTheSameAsAComparisonOfEachName) {
    std::mt19937 random(7);
    const QString letters = u"aAbB é\u00c9ßſΣς9İ🙂"_s;
    const auto below = [&random](qsizetype limit) {
        return static_cast<qsizetype>(random() % static_cast<unsigned>(limit));
    };
    const auto text = [&](qsizetype longest) {
        QString result;
        for (qsizetype i = below(longest); i > 0; --i) {
            result += letters[below(letters.size())];
        }
        return result.isValidUtf16() ? result : QString(u"a"_s);
    };
    const auto fold = [](const QString& name) {
        return name.toLower().toCaseFolded().replace(u"ß"_s, u"ss"_s);
    };
    const NameOrder order(QLocale(QLocale::English, QLocale::UnitedStates));
    for (int round = 0; round < 300; ++round) {
        std::vector<AppInfo> apps;
        for (qsizetype i = below(30); i > 0; --i) {
            apps.push_back({QString::number(i), text(8)});
        }
        const QString query = text(4);
        const QString lowered = query.trimmed().toLower();
        std::vector<std::size_t> expected;
        for (std::size_t i = 0; i < apps.size(); ++i) {
            if (!lowered.isEmpty() && fold(apps[i].name).contains(fold(lowered))) {
                expected.push_back(i);
            }
        }
        std::stable_sort(expected.begin(), expected.end(), [&](std::size_t a, std::size_t b) {
            const bool aStarts = apps[a].name.toLower().startsWith(lowered);
            const bool bStarts = apps[b].name.toLower().startsWith(lowered);
            return aStarts != bStarts ? aStarts : order.compare(apps[a].name, apps[b].name) < 0;
        });
        EXPECT_EQ(SearchIndex(apps, order).find(query), expected) << query.toStdString();
    }
}
