#include "localization/FrameworkLanguage.h"

#include "support/MemoryPreferences.h"

#include <QCoreApplication>
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

    // What Qt's own dialogs write on a button.
    static QString cancelButton() { return QCoreApplication::translate("QPlatformTheme", "Cancel"); }

    int argumentCount_ = 0;
    QCoreApplication application_{argumentCount_, nullptr};
    MemoryPreferences preferences_;
    FrameworkLanguage frameworks_{preferences_};
};

} // namespace

TEST_F(FrameworkLanguageTest, QtsOwnTextsFollowEveryLanguageAtOnce) {
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

TEST_F(FrameworkLanguageTest, ChineseIsTheSimplifiedOne) {
    frameworks_.apply(AppLanguage::Chinese);
    EXPECT_EQ(preferences_.stringList(key), QStringList{u"zh-Hans"_s});
    EXPECT_EQ(QLocale().script(), QLocale::SimplifiedHanScript);
    EXPECT_EQ(QCoreApplication::translate("QPlatformTheme", "Save"), u"保存"_s);
}

TEST_F(FrameworkLanguageTest, TheChoiceIsKeptForAsLongAsThereIsOne) {
    frameworks_.apply(AppLanguage::Japanese);
    EXPECT_EQ(preferences_.stringList(key), QStringList{u"ja"_s});
    frameworks_.apply(AppLanguage::System);
    EXPECT_FALSE(preferences_.contains(key));
}

TEST_F(FrameworkLanguageTest, FollowingTheSystemGoesBackToItsLocale) {
    frameworks_.apply(AppLanguage::System);
    const QString systems = cancelButton();
    frameworks_.apply(systems == u"Annuler"_s ? AppLanguage::German : AppLanguage::French);
    EXPECT_NE(cancelButton(), systems);
    EXPECT_NE(QLocale(), QLocale::system());
    frameworks_.apply(AppLanguage::System);
    EXPECT_EQ(cancelButton(), systems);
    EXPECT_EQ(QLocale(), QLocale::system());
}

TEST_F(FrameworkLanguageTest, WithoutQtsTranslationsItsTextsStayEnglish) {
    FrameworkLanguage frameworks(preferences_, u"/nowhere"_s);
    frameworks.apply(AppLanguage::German);
    EXPECT_EQ(cancelButton(), u"Cancel"_s);
    EXPECT_EQ(QLocale().language(), QLocale::German);
}

TEST_F(FrameworkLanguageTest, NothingIsLeftBehindWhenItGoes) {
    {
        FrameworkLanguage frameworks(preferences_);
        frameworks.apply(AppLanguage::German);
        ASSERT_EQ(cancelButton(), u"Abbrechen"_s);
    }
    EXPECT_EQ(cancelButton(), u"Cancel"_s);
}
