#include "platform/linux/applications/entries/EntryLocale.h"

#include "support/FixedEnvironment.h"

#include <gtest/gtest.h>

using namespace amberquill;
using namespace amberquill::desktop;

namespace {

using Suffixes = std::vector<QByteArray>;

Suffixes suffixesOf(const std::map<std::string, QByteArray>& variables) {
    return entryLocaleFromEnvironment(environmentOf(variables)).suffixes;
}

} // namespace

TEST(EntryLocale, AFullNameHasFourSuffixesInTheStandardsOrder) {
    EXPECT_EQ(entryLocaleFor({"sr_RS.UTF-8@latin"}).suffixes,
              (Suffixes{"sr_RS@latin", "sr_RS", "sr@latin", "sr"}));
}

TEST(EntryLocale, TheEncodingIsIgnored) {
    EXPECT_EQ(entryLocaleFor({"de_AT.ISO-8859-15"}).suffixes, (Suffixes{"de_AT", "de"}));
    EXPECT_EQ(entryLocaleFor({"de.UTF-8"}).suffixes, (Suffixes{"de"}));
}

TEST(EntryLocale, ThreeLetterLanguagesWork) {
    EXPECT_EQ(entryLocaleFor({"hsb_DE.UTF-8"}).suffixes, (Suffixes{"hsb_DE", "hsb"}));
}

TEST(EntryLocale, ALocaleWithoutModifierHasNoSuffixWithOne) {
    EXPECT_EQ(entryLocaleFor({"sr_RS.UTF-8"}).suffixes, (Suffixes{"sr_RS", "sr"}));
    EXPECT_EQ(entryLocaleFor({"sr_RS.UTF-8"}).rank("sr@latin"), std::nullopt);
}

TEST(EntryLocale, AModifierWithoutCountry) {
    EXPECT_EQ(entryLocaleFor({"ca@valencia"}).suffixes, (Suffixes{"ca@valencia", "ca"}));
}

TEST(EntryLocale, SuffixesOfSeveralNamesAreInOrderAndUnique) {
    EXPECT_EQ(entryLocaleFor({"de_AT", "de_DE", "de", "", "fr"}).suffixes,
              (Suffixes{"de_AT", "de", "de_DE", "fr"}));
}

TEST(EntryLocale, CAndPosixEndTheList) {
    for (const char* const name : {"C", "POSIX", "C.UTF-8"}) {
        EXPECT_EQ(entryLocaleFor({name}).suffixes, Suffixes{}) << name;
        EXPECT_EQ(entryLocaleFor({"fr", name, "de"}).suffixes, Suffixes{"fr"}) << name;
    }
}

TEST(EntryLocale, InvalidNamesAreSkipped) {
    EXPECT_EQ(entryLocaleFor({"@euro", ".UTF-8", "_DE", "it"}).suffixes, Suffixes{"it"});
}

TEST(EntryLocale, TheListIsBounded) {
    QByteArrayList names;
    for (int number = 0; number < 10'000; ++number) {
        names.append(QByteArray::number(number));
    }
    EXPECT_EQ(entryLocaleFor(names).suffixes.size(), 64U);
}

TEST(EntryLocale, TheRankIsTheIndexInTheList) {
    const EntryLocale locale = entryLocaleFor({"de_AT"});
    EXPECT_EQ(locale.rank("de_AT"), 0U);
    EXPECT_EQ(locale.rank("de"), 1U);
    EXPECT_EQ(locale.rank("de_DE"), std::nullopt);
    EXPECT_EQ(locale.rank("DE"), std::nullopt);
    EXPECT_EQ(locale.rank(""), std::nullopt);
}

TEST(EntryLocaleFromEnvironment, LanguageIsAColonListAndComesFirst) {
    EXPECT_EQ(suffixesOf({{"LANGUAGE", "de_AT:fr"}, {"LC_ALL", "it"}, {"LANG", "es"}}),
              (Suffixes{"de_AT", "de", "fr"}));
}

TEST(EntryLocaleFromEnvironment, ThenLcAllThenLcMessagesThenLang) {
    EXPECT_EQ(suffixesOf({{"LC_ALL", "it"}, {"LC_MESSAGES", "fr"}, {"LANG", "es"}}), Suffixes{"it"});
    EXPECT_EQ(suffixesOf({{"LC_MESSAGES", "fr"}, {"LANG", "es"}}), Suffixes{"fr"});
    EXPECT_EQ(suffixesOf({{"LANG", "es"}}), Suffixes{"es"});
    EXPECT_EQ(suffixesOf({}), Suffixes{});
}

TEST(EntryLocaleFromEnvironment, EmptyVariablesCountAsNotSet) {
    EXPECT_EQ(suffixesOf({{"LANGUAGE", ""}, {"LC_ALL", ""}, {"LC_MESSAGES", ""}, {"LANG", "es"}}),
              Suffixes{"es"});
}

TEST(EntryLocaleFromEnvironment, OtherCategoriesDoNotCount) {
    EXPECT_EQ(suffixesOf({{"LC_TIME", "fr"}, {"LC_CTYPE", "de"}}), Suffixes{});
}
