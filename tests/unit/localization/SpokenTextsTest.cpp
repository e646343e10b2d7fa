#include "localization/SpokenTexts.h"

#include "localization/L.h"

#include <gtest/gtest.h>

using namespace amberquill;
using namespace Qt::StringLiterals;

namespace {

class SpokenTexts : public testing::Test {
protected:
    void TearDown() override { L::setLanguage(AppLanguage::System); }
};

} // namespace

TEST_F(SpokenTexts, AFolderIsSpokenWithItsNameAndHowManyItHolds) {
    L::setLanguage(AppLanguage::English);
    EXPECT_EQ(spokenFolder(u"Games"_s, 5), u"Games, folder, 5 apps"_s);
    EXPECT_EQ(spokenFolder(u"Games"_s, 1), u"Games, folder, 1 app"_s);
    EXPECT_EQ(spokenFolder(u"100 %2"_s, 0), u"100 %2, folder, 0 apps"_s) << "names are not formats";
    L::setLanguage(AppLanguage::German);
    EXPECT_EQ(spokenFolder(u"Spiele"_s, 5), u"Spiele, Ordner, 5 Apps"_s);
    L::setLanguage(AppLanguage::Japanese);
    EXPECT_EQ(spokenFolder(u"ゲーム"_s, 5), u"ゲーム、フォルダ、アプリ5個"_s);
}

TEST_F(SpokenTexts, EveryLanguageHasEachOfThem) {
    for (const AppLanguage language : allAppLanguages) {
        L::setLanguage(language);
        EXPECT_TRUE(spokenPage(2, 6).contains(u'2') && spokenPage(2, 6).contains(u'6'));
        EXPECT_TRUE(spokenFolder(u"N"_s, 3).startsWith(u'N') && spokenFolder(u"N"_s, 3).contains(u'3'));
        EXPECT_FALSE(spokenClear().isEmpty());
    }
}
