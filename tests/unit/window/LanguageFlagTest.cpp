#include "window/LanguageFlag.h"

#include "localization/L.h"

#include <gtest/gtest.h>

using namespace amberquill;
using namespace Qt::StringLiterals;

TEST(LanguageFlag, EachLanguageHasAPictureOfItsOwnOf18By12Points) {
    QList<QImage> seen;
    for (const AppLanguage language : allAppLanguages) {
        const QImage flag = languageFlag(language, 2);
        EXPECT_EQ(flag.size(), QSize(36, 24));
        EXPECT_EQ(flag.pixelColor(0, 0).alpha() < 128, true) << "rounded corners";
        EXPECT_GT(flag.pixelColor(18, 12).alpha(), 250);
        EXPECT_FALSE(seen.contains(flag));
        seen += flag;
    }
}

TEST(LanguageFlag, TheStripesAreInTheirPlaces) {
    const QImage italy = languageFlag(AppLanguage::Italian, 1);
    EXPECT_GT(italy.pixelColor(3, 6).green(), italy.pixelColor(3, 6).red() + 60);
    EXPECT_GT(italy.pixelColor(9, 6).lightness(), 220);
    EXPECT_GT(italy.pixelColor(15, 6).red(), italy.pixelColor(15, 6).green() + 60);
}

TEST(LanguageFlag, LanguagesHaveTheirOwnNames) {
    L::setLanguage(AppLanguage::German);
    EXPECT_EQ(languageTitle(AppLanguage::Spanish), u"Español"_s);
    EXPECT_EQ(languageTitle(AppLanguage::Japanese), u"日本語"_s);
    EXPECT_EQ(languageTitle(AppLanguage::System), L::automatic());
    L::setLanguage(AppLanguage::System);
}
