#include "window/LauncherMenu.h"

#include "localization/L.h"
#include "motion/Animation.h"
#include "support/ModelFixture.h"
#include "support/PlatformFakes.h"
#include "window/LayoutDialogs.h"
#include "window/MenuStyle.h"

#include <QActionGroup>
#include <QApplication>
#include <QWindow>

using namespace amberquill;
using namespace Qt::StringLiterals;

namespace {

class LauncherMenuTest : public ModelFixture {
protected:
    void SetUp() override {
        ModelFixture::SetUp();
        L::setSystemLanguages(&system_);
        L::setLanguage(AppLanguage::English);
        shownWith(3);
        dialogs_ = std::make_unique<LayoutDialogs>(LayoutDialogs::Services{
            .model = *model_, .files = files_, .startFolder = u"/desktop"_s, .above = [] {
                return nullptr;
            }});
    }
    void TearDown() override {
        L::setLanguage(AppLanguage::System);
        L::setSystemLanguages(nullptr);
        ModelFixture::TearDown();
    }

    [[nodiscard]] std::unique_ptr<QMenu> menu() {
        return LauncherMenu({.model = *model_,
                             .dialogs = *dialogs_,
                             .hideLauncher = [this] { ++hidden_; },
                             .quit = [this] { ++quits_; },
                             .addUpdateItems = [](QMenu& menu) { menu.addAction(u"update"_s); },
                             .addPresenceItems = [](QMenu& menu) { menu.addAction(u"presence"_s); }})
            .make();
    }

    static QStringList titles(const QMenu& menu) {
        QStringList result;
        for (const QAction* action : menu.actions()) {
            result += action->isSeparator() ? u"-"_s : action->text();
        }
        return result;
    }

    static QStringList checked(const QMenu& menu) {
        QStringList result;
        for (const QAction* action : menu.actions()) {
            if (action->isChecked()) {
                result += action->text();
            }
        }
        return result;
    }

    static QMenu& submenu(const QMenu& menu, int index) { return *menu.actions().at(index)->menu(); }

    static QAction& item(const QMenu& menu, const QString& title) {
        return *menu.actions().at(titles(menu).indexOf(title));
    }

    FixedSystemLanguages system_{{u"fr-FR"_s}};
    std::unique_ptr<LayoutDialogs> dialogs_;
    int hidden_ = 0;
    int quits_ = 0;
};

} // namespace

TEST_F(LauncherMenuTest, ItsEntriesStandInOrder) {
    EXPECT_EQ(titles(*menu()),
              (QStringList{L::grid(), L::background(), L::languageLabel(), u"-"_s, L::sortByName(),
                           L::resetLayout(), L::exportLayout(), L::importLayout(), L::rescan(), u"-"_s,
                           L::openAtLogin(), u"update"_s, u"-"_s, u"presence"_s, u"-"_s, L::toggleLauncher(),
                           u"-"_s, L::quit()}));
}

TEST_F(LauncherMenuTest, TheSixGridsAreOfferedAndTheCurrentOneIsChecked) {
    const auto made = menu();
    const QMenu& grids = submenu(*made, 0);
    EXPECT_EQ(titles(grids),
              (QStringList{u"5 × 4"_s, u"6 × 4"_s, u"7 × 5"_s, u"8 × 5"_s, u"8 × 6"_s, u"9 × 6"_s}));
    EXPECT_EQ(checked(grids), QStringList{u"7 × 5"_s});
    grids.actions().at(3)->trigger();
    EXPECT_EQ(model_->columns(), 8);
    EXPECT_EQ(model_->rows(), 5);
    EXPECT_EQ(checked(submenu(*menu(), 0)), QStringList{u"8 × 5"_s});
}

TEST_F(LauncherMenuTest, TheTilesMoveToTheirPlacesInAnotherGrid) {
    std::vector<std::optional<Animation>> carried;
    QObject::connect(model_.get(), &LauncherModel::gridChanged,
                     [&carried] { carried.push_back(currentAnimation()); });
    submenu(*menu(), 0).actions().at(0)->trigger();
    EXPECT_EQ(carried, (std::vector<std::optional<Animation>>(2, spring(0.4, 0.85))))
        << "the columns, then the rows";
}

TEST_F(LauncherMenuTest, TheShownMenuAndItsSubmenusHaveTheLaunchersStyle) {
    QWindow launcher;
    LauncherMenu shown({*model_, *dialogs_, [] {}, [] {}, {}, {}});
    shown.popUp(launcher, QPoint(10, 10));
    auto* menu = qobject_cast<QMenu*>(QApplication::activePopupWidget());
    ASSERT_NE(menu, nullptr);
    EXPECT_EQ(menu->windowHandle()->transientParent(), &launcher);
    EXPECT_EQ(menu->activeAction(), menu->actions().constFirst()) << "opened by a key";
    const QList<QMenu*> submenus = menu->findChildren<QMenu*>();
    ASSERT_EQ(submenus.size(), 3);
    for (const QMenu* each : submenus + QList{menu}) {
        EXPECT_NE(qobject_cast<MenuStyle*>(each->style()), nullptr) << each->title().toStdString();
    }
}

TEST_F(LauncherMenuTest, AGridThatIsNoPresetChecksNone) {
    model_->setGrid(12, 2);
    EXPECT_TRUE(checked(submenu(*menu(), 0)).isEmpty());
}

TEST_F(LauncherMenuTest, TheThemesAreNamedInTheInterfaceLanguage) {
    model_->setLanguage(AppLanguage::German);
    EXPECT_EQ(titles(submenu(*menu(), 1)), (QStringList{u"Blau"_s, u"Lila"_s, u"Grün"_s}));
    model_->setLanguage(AppLanguage::System);
    EXPECT_EQ(titles(submenu(*menu(), 1)), (QStringList{u"Bleu"_s, u"Violet"_s, u"Vert"_s}));
    const auto made = menu();
    EXPECT_EQ(checked(submenu(*made, 1)), QStringList{u"Bleu"_s});
    submenu(*made, 1).actions().at(2)->trigger();
    EXPECT_EQ(model_->background(), BackgroundTheme::Green);
}

TEST_F(LauncherMenuTest, TheLanguagesAreOfferedWithTheirFlags) {
    const auto made = menu();
    const QMenu& languages = submenu(*made, 2);
    EXPECT_EQ(titles(languages), (QStringList{L::automatic(), u"English"_s, u"Italiano"_s, u"Español"_s,
                                              u"Français"_s, u"Deutsch"_s, u"中文"_s, u"日本語"_s}));
    for (const QAction* action : languages.actions()) {
        EXPECT_FALSE(action->icon().isNull());
    }
    languages.actions().at(2)->trigger();
    EXPECT_EQ(model_->language(), AppLanguage::Italian);
    EXPECT_EQ(checked(submenu(*menu(), 2)), QStringList{u"Italiano"_s});
    EXPECT_EQ(titles(*menu()).constFirst(), L::grid()) << "and the next menu is Italian";
}

TEST_F(LauncherMenuTest, GridsThemesAndLanguagesAreExclusive) {
    const auto made = menu();
    for (int index = 0; index < 3; ++index) {
        const QList<QAction*> entries = submenu(*made, index).actions();
        const QActionGroup* group = entries.constFirst()->actionGroup();
        ASSERT_NE(group, nullptr);
        EXPECT_TRUE(group->isExclusive());
        EXPECT_EQ(group->actions(), entries);
    }
    EXPECT_EQ(item(*made, L::openAtLogin()).actionGroup(), nullptr);
}

TEST_F(LauncherMenuTest, ItsEntriesRunTheirActions) {
    const auto made = menu();
    item(*made, L::rescan()).trigger();
    queue_.runPosted();
    EXPECT_EQ(scans_, 2);
    EXPECT_EQ(item(*made, L::toggleLauncher()).shortcut(), QKeySequence(u"Ctrl+Alt+Space"_s));
    item(*made, L::toggleLauncher()).trigger();
    EXPECT_EQ(hidden_, 1);
    item(*made, L::quit()).trigger();
    EXPECT_EQ(quits_, 1);
    item(*made, L::resetLayout()).trigger();
    EXPECT_TRUE(dialogs_->isOpen());
}

TEST_F(LauncherMenuTest, SortingByNameSorts) {
    installed_ = {{u"/b.app"_s, u"B"_s}, {u"/a.app"_s, u"A"_s}};
    files_.addFile(layoutPath, encodeItems({LaunchItem::app(u"/b.app"_s), LaunchItem::app(u"/a.app"_s)}));
    makeModel();
    model_->willShow();
    queue_.runPosted();
    dialogs_ = std::make_unique<LayoutDialogs>(LayoutDialogs::Services{
        .model = *model_, .files = files_, .startFolder = u"/desktop"_s, .above = [] { return nullptr; }});
    item(*menu(), L::sortByName()).trigger();
    EXPECT_EQ(model_->items(), (LaunchItems{LaunchItem::app(u"/a.app"_s), LaunchItem::app(u"/b.app"_s)}));
}
