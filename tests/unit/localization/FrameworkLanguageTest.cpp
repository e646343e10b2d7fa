#include "localization/FrameworkLanguage.h"

#include "support/MemoryPreferences.h"
#include "support/PlatformFakes.h"

#include <QCoreApplication>
#include <QKeySequence>
#include <QLocale>
#include <gtest/gtest.h>
#include <map>

using namespace amberquill;
using namespace Qt::StringLiterals;

namespace {

const QString key = u"AppleLanguages"_s;

class FrameworkLanguageTest : public testing::Test {
protected:
    void TearDown() override {
        frameworks_.apply(AppLanguage::System);
        QLocale::setDefault(QLocale::system());
    }

    // The name of a key in menus.
    static QString spaceBar() { return QKeySequence(Qt::Key_Space).toString(QKeySequence::NativeText); }

    // What Qt's own dialogs write on a button.
    static QString cancelButton() { return QCoreApplication::translate("QPlatformTheme", "Cancel"); }

    int argumentCount_ = 0;
    QCoreApplication application_{argumentCount_, nullptr};
    MemoryPreferences preferences_;
    FixedSystemLanguages system_{{u"de-CH"_s}};
    FrameworkLanguage frameworks_{preferences_, system_};
};

} // namespace

TEST_F(FrameworkLanguageTest, QtsTextsFollowTheLanguageAtOnce) {
    const std::map<AppLanguage, QString> texts = {
        {AppLanguage::English, u"Cancel"_s},      {AppLanguage::Italian, u"Annulla"_s},
        {AppLanguage::Spanish, u"Cancelar"_s},    {AppLanguage::French, u"Annuler"_s},
        {AppLanguage::German, u"Abbrechen"_s},    {AppLanguage::Chinese, u"取消"_s},
        {AppLanguage::Japanese, u"キャンセル"_s},
    };
    ASSERT_EQ(texts.size(), allAppLanguages.size() - 1);
    for (const auto& [language, text] : texts) {
        frameworks_.apply(language);
        EXPECT_EQ(cancelButton(), text);
    }
}

TEST_F(FrameworkLanguageTest, ChineseIsSimplifiedChinese) {
    frameworks_.apply(AppLanguage::Chinese);
    EXPECT_EQ(preferences_.stringList(key), QStringList{u"zh-Hans"_s});
    EXPECT_EQ(QLocale().script(), QLocale::SimplifiedHanScript);
    EXPECT_EQ(QCoreApplication::translate("QPlatformTheme", "Save"), u"保存"_s);
}

TEST_F(FrameworkLanguageTest, TheChoiceIsStored) {
    frameworks_.apply(AppLanguage::Japanese);
    EXPECT_EQ(preferences_.stringList(key), QStringList{u"ja"_s});
    frameworks_.apply(AppLanguage::System);
    EXPECT_FALSE(preferences_.contains(key));
}

TEST_F(FrameworkLanguageTest, FollowingTheSystemRestoresItsLocale) {
    frameworks_.apply(AppLanguage::French);
    frameworks_.apply(AppLanguage::System);
    EXPECT_EQ(cancelButton(), u"Abbrechen"_s);
    EXPECT_EQ(QLocale(), QLocale::system());
    EXPECT_EQ(QLocale().territory(), QLocale::Switzerland);
}

TEST_F(FrameworkLanguageTest, FollowingTheSystemQtUsesTheLanguageOfTheInterface) {
    system_.setPreferred({u"pt-BR"_s, u"fr-FR"_s});
    frameworks_.apply(AppLanguage::System);
    EXPECT_EQ(cancelButton(), u"Annuler"_s);
    EXPECT_EQ(spaceBar(), u"Espace"_s);
    EXPECT_EQ(QLocale().language(), QLocale::French);
}

TEST_F(FrameworkLanguageTest, ALanguageThatTheInterfaceLacksIsNotUsedByQt) {
    system_.setPreferred({u"pl-PL"_s});
    frameworks_.apply(AppLanguage::System);
    EXPECT_EQ(cancelButton(), u"Cancel"_s);
    EXPECT_EQ(spaceBar(), u"Space"_s);
    EXPECT_EQ(QLocale().language(), QLocale::English);
}

TEST_F(FrameworkLanguageTest, TraditionalChineseLeadsToSimplifiedChinese) {
    system_.setPreferred({u"zh-Hant-TW"_s});
    frameworks_.apply(AppLanguage::System);
    EXPECT_EQ(QCoreApplication::translate("QPlatformTheme", "Save"), u"保存"_s);
    EXPECT_EQ(QLocale().script(), QLocale::SimplifiedHanScript);
}

TEST_F(FrameworkLanguageTest, WithoutQtsTranslationsItsTextsAreEnglish) {
    FrameworkLanguage frameworks(preferences_, system_, u"/nowhere"_s);
    frameworks.apply(AppLanguage::German);
    EXPECT_EQ(cancelButton(), u"Cancel"_s);
    EXPECT_EQ(QLocale().language(), QLocale::German);
}

TEST_F(FrameworkLanguageTest, ItsDestructionRemovesTheTranslation) {
    {
        FrameworkLanguage frameworks(preferences_, system_);
        frameworks.apply(AppLanguage::German);
        ASSERT_EQ(cancelButton(), u"Abbrechen"_s);
    }
    EXPECT_EQ(cancelButton(), u"Cancel"_s);
}
