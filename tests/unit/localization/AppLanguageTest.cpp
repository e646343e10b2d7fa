#include "localization/AppLanguage.h"

#include "support/PlatformFakes.h"

#include <gtest/gtest.h>

using namespace amberquill;
using namespace Qt::StringLiterals;

namespace {

AppLanguage following(const QStringList& preferred) {
    return fromSystem(FixedSystemLanguages(preferred));
}

} // namespace

TEST(AppLanguage, EachHasAStoredText) {
    const QStringList texts = {u"system"_s, u"en"_s, u"it"_s, u"es"_s, u"fr"_s, u"de"_s, u"zh"_s, u"ja"_s};
    ASSERT_EQ(texts.size(), static_cast<qsizetype>(allAppLanguages.size()));
    for (qsizetype i = 0; i < texts.size(); ++i) {
        const AppLanguage language = allAppLanguages.at(static_cast<std::size_t>(i));
        EXPECT_EQ(rawValue(language), texts[i]);
        EXPECT_EQ(appLanguage(texts[i]), language);
    }
}

TEST(AppLanguage, TheStoredTextIsCaseSensitive) {
    EXPECT_EQ(appLanguage(u"EN"_s), std::nullopt);
    EXPECT_EQ(appLanguage(u"pt"_s), std::nullopt);
    EXPECT_EQ(appLanguage(QString()), std::nullopt);
}

TEST(FromSystem, TheFirstTwoCharactersOfATagDecide) {
    EXPECT_EQ(following({u"de-CH"_s}), AppLanguage::German);
    EXPECT_EQ(following({u"zh-Hant-TW"_s, u"en"_s}), AppLanguage::Chinese);
}

TEST(FromSystem, UnknownLanguagesAreSkipped) {
    EXPECT_EQ(following({u"pt-BR"_s, u"fr-FR"_s}), AppLanguage::French);
    EXPECT_EQ(following({u"x"_s, u""_s, u"ja"_s}), AppLanguage::Japanese);
}

TEST(FromSystem, WithoutAKnownLanguageItIsEnglish) {
    EXPECT_EQ(following({u"pt-BR"_s, u"sv"_s}), AppLanguage::English);
    EXPECT_EQ(following({}), AppLanguage::English);
    EXPECT_EQ(following({u"system"_s}), AppLanguage::English);
}

TEST(FromSystem, ASystemWideListHasPriorityEvenIfEmpty) {
    FixedSystemLanguages languages({u"fr-FR"_s});
    languages.setSystemWide(QStringList{u"it"_s});
    EXPECT_EQ(fromSystem(languages), AppLanguage::Italian);
    languages.setSystemWide(QStringList{});
    EXPECT_EQ(fromSystem(languages), AppLanguage::English);
}
