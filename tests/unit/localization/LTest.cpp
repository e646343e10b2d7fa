#include "localization/L.h"

#include "support/MemoryPreferences.h"
#include "support/PlatformFakes.h"
#include "support/TestPaths.h"

#include <QFile>
#include <gtest/gtest.h>
#include <map>

using namespace amberquill;
using namespace Qt::StringLiterals;

namespace {

class LTest : public testing::Test {
protected:
    void SetUp() override { L::setSystemLanguages(&system_); }
    void TearDown() override {
        L::setSystemLanguages(nullptr);
        L::setLanguage(AppLanguage::System);
    }

    FixedSystemLanguages system_{{u"en-GB"_s}};
};

} // namespace

TEST_F(LTest, EveryTextIsTheOneInTheList) {
    const std::map<QString, QString (*)()> accessors = {
        {u"about"_s, &L::about},
        {u"hide"_s, &L::hide},
        {u"quit"_s, &L::quit},
        {u"edit"_s, &L::edit},
        {u"undo"_s, &L::undo},
        {u"cut"_s, &L::cut},
        {u"copy"_s, &L::copy},
        {u"paste"_s, &L::paste},
        {u"selectAll"_s, &L::selectAll},
        {u"close"_s, &L::close},
        {u"grid"_s, &L::grid},
        {u"background"_s, &L::background},
        {u"languageLabel"_s, &L::languageLabel},
        {u"automatic"_s, &L::automatic},
        {u"sortByName"_s, &L::sortByName},
        {u"resetLayout"_s, &L::resetLayout},
        {u"exportLayout"_s, &L::exportLayout},
        {u"importLayout"_s, &L::importLayout},
        {u"rescan"_s, &L::rescan},
        {u"openAtLogin"_s, &L::openAtLogin},
        {u"newFolder"_s, &L::newFolder},
        {u"otherApps"_s, &L::otherApps},
        {u"search"_s, &L::search},
        {u"noResults"_s, &L::noResults},
        {u"emptyFolder"_s, &L::emptyFolder},
        {u"resetTitle"_s, &L::resetTitle},
        {u"resetMessage"_s, &L::resetMessage},
        {u"reset"_s, &L::reset},
        {u"cancel"_s, &L::cancel},
        {u"settings"_s, &L::settings},
        {u"visibility"_s, &L::visibility},
        {u"showInDock"_s, &L::showInDock},
        {u"showInMenuBar"_s, &L::showInMenuBar},
        {u"visibilityHint"_s, &L::visibilityHint},
        {u"checkForUpdates"_s, &L::checkForUpdates},
        {u"upToDate"_s, &L::upToDate},
        {u"checkAutomatically"_s, &L::checkAutomatically},
        {u"toggleLauncher"_s, &L::toggleLauncher},
        {u"exportFileName"_s, &L::exportFileName},
        {u"exportFailed"_s, &L::exportFailed},
        {u"importTitle"_s, &L::importTitle},
        {u"importButton"_s, &L::importButton},
        {u"importFailed"_s, &L::importFailed},
        {u"invalidLayoutFile"_s, &L::invalidLayoutFile},
    };
    QFile list(projectFile(u"tests/unit/localization/data/texts.tsv"_s));
    ASSERT_TRUE(list.open(QIODevice::ReadOnly));
    std::size_t lines = 0;
    while (!list.atEnd()) {
        const QStringList cells = QString::fromUtf8(list.readLine()).chopped(1).split(u'\t');
        ASSERT_EQ(cells.size(), 8);
        ASSERT_TRUE(accessors.contains(cells[0])) << cells[0].toStdString();
        ++lines;
        for (qsizetype column = 1; column < cells.size(); ++column) {
            L::setLanguage(allAppLanguages.at(static_cast<std::size_t>(column)));
            EXPECT_EQ(accessors.at(cells[0])(), cells[column]);
        }
    }
    EXPECT_EQ(lines, accessors.size());
    EXPECT_EQ(lines, textTable().size());
}

TEST_F(LTest, EveryMessageIsTheOneInTheList) {
    const std::map<QString, QString (*)()> messages = {
        {u"importMessage"_s, &L::importMessage},
        {u"upToDateMessage"_s, [] { return L::upToDateMessage(u"1.2.3"_s); }},
    };
    QFile list(projectFile(u"tests/unit/localization/data/messages.tsv"_s));
    ASSERT_TRUE(list.open(QIODevice::ReadOnly));
    std::size_t lines = 0;
    while (!list.atEnd()) {
        const QStringList cells = QString::fromUtf8(list.readLine()).chopped(1).split(u'\t');
        ASSERT_EQ(cells.size(), 8);
        ASSERT_TRUE(messages.contains(cells[0])) << cells[0].toStdString();
        ++lines;
        for (qsizetype column = 1; column < cells.size(); ++column) {
            L::setLanguage(allAppLanguages.at(static_cast<std::size_t>(column)));
            EXPECT_EQ(messages.at(cells[0])(), cells[column]);
        }
    }
    EXPECT_EQ(lines, messages.size());
}

TEST_F(LTest, FollowingTheSystemAsksItAtEveryLookup) {
    L::setLanguage(AppLanguage::System);
    system_.setPreferred({u"fr-FR"_s, u"en"_s});
    EXPECT_EQ(L::search(), u"Rechercher"_s);
    system_.setPreferred({u"ja"_s});
    EXPECT_EQ(L::search(), u"検索"_s);
    EXPECT_EQ(L::language(), AppLanguage::System);
}

TEST_F(LTest, FrenchHasNoBreakSpaces) {
    L::setLanguage(AppLanguage::French);
    EXPECT_TRUE(L::resetTitle().endsWith(u"\u00a0?"_s));
    EXPECT_TRUE(L::importTitle().endsWith(u"\u00a0?"_s));
    EXPECT_TRUE(L::importMessage().contains(u"«\u00a0Autres apps\u00a0»."_s));
}

TEST_F(LTest, TheImportMessageNamesTheFolderForOtherApps) {
    L::setLanguage(AppLanguage::German);
    EXPECT_TRUE(L::importMessage().endsWith(u"Ordner „Weitere Apps“."_s));
    L::setLanguage(AppLanguage::English);
    EXPECT_TRUE(L::importMessage().endsWith(u"go into the “Other Apps” folder."_s));
}

TEST_F(LTest, TheUpToDateMessageContainsTheVersion) {
    L::setLanguage(AppLanguage::English);
    EXPECT_EQ(L::upToDateMessage(u"1.2.3"_s), u"Amberquill 1.2.3 is the latest version."_s);
    L::setLanguage(AppLanguage::Italian);
    EXPECT_EQ(L::upToDateMessage(u"1.2.3"_s), u"Amberquill 1.2.3 è l'ultima versione."_s);
}

TEST_F(LTest, AnInvalidStoredChoiceFollowsTheSystem) {
    MemoryPreferences preferences;
    L::setLanguage(AppLanguage::German);
    L::loadLanguage(preferences);
    EXPECT_EQ(L::language(), AppLanguage::System);
    for (const AppLanguage language : allAppLanguages) {
        preferences.setString(u"appLanguage"_s, rawValue(language));
        L::loadLanguage(preferences);
        EXPECT_EQ(L::language(), language);
    }
    for (const QString& text : {u"EN"_s, u"pt"_s, QString()}) {
        preferences.setString(u"appLanguage"_s, text);
        L::loadLanguage(preferences);
        EXPECT_EQ(L::language(), AppLanguage::System) << text.toStdString();
    }
    preferences.setInteger(u"appLanguage"_s, 1);
    L::loadLanguage(preferences);
    EXPECT_EQ(L::language(), AppLanguage::System);
}
