#include "shell/VisibilityController.h"

#include "localization/L.h"
#include "platform/StatusItem.h"
#include "platform/WindowSystem.h"
#include "support/ManualQueue.h"
#include "support/MemoryPreferences.h"

#include <QMenu>
#include <gtest/gtest.h>

using namespace amberquill;
using namespace Qt::StringLiterals;

namespace {

class RecordingStatusItem final : public StatusItem {
public:
    void setActions(Actions what) override { actions = std::move(what); }
    void setVisible(bool visible) override {
        isVisible_ = visible;
        ++changes;
    }
    [[nodiscard]] bool isVisible() const override { return isVisible_; }

    Actions actions;
    int changes = 0;

private:
    bool isVisible_ = false;
};

class RecordingWindowSystem final : public WindowSystem {
public:
    [[nodiscard]] QScreen* screenUnderPointer() const override { return nullptr; }
    void setListedInTaskBars(bool listed) override { isListed = listed; }
    void present(QWindow&, QScreen*) override {}
    void withdraw(QWindow&, std::function<void()> then) override { then(); }
    void beep() override {}

    bool isListed = false;
};

class VisibilityControllerTest : public testing::Test {
protected:
    void SetUp() override {
        L::setLanguage(AppLanguage::English);
        controller_.isLauncherShown = [this] { return isShown_; };
        controller_.showLauncher = [this] { ++shows_; };
        controller_.toggleLauncher = [this] { ++toggles_; };
        controller_.apply();
    }
    void TearDown() override { L::setLanguage(AppLanguage::System); }

    // A menu with the dock switch and the menu-bar switch.
    [[nodiscard]] std::unique_ptr<QMenu> switches() {
        auto menu = std::make_unique<QMenu>();
        controller_.addItems(*menu, false);
        return menu;
    }

    ManualQueue queue_;
    MemoryPreferences preferences_;
    RecordingWindowSystem windows_;
    RecordingStatusItem statusItem_;
    VisibilityController controller_{
        {.preferences = preferences_, .queue = queue_, .windows = windows_, .statusItem = statusItem_}};
    bool isShown_ = false;
    int shows_ = 0;
    int toggles_ = 0;
};

} // namespace

TEST_F(VisibilityControllerTest, AFirstStartHasATaskBarEntryAndNoStatusItem) {
    EXPECT_TRUE(controller_.showsInDock());
    EXPECT_FALSE(controller_.showsInMenuBar());
    EXPECT_TRUE(windows_.isListed);
    EXPECT_FALSE(statusItem_.isVisible());
    EXPECT_EQ(statusItem_.changes, 0);
}

TEST_F(VisibilityControllerTest, AStoredValueOfAnotherTypeCountsAsAbsent) {
    preferences_.setString(u"showInDock"_s, u"no"_s);
    preferences_.setInteger(u"showInMenuBar"_s, 1);
    EXPECT_TRUE(controller_.showsInDock());
    EXPECT_FALSE(controller_.showsInMenuBar());
}

TEST_F(VisibilityControllerTest, TheLastSwitchThatIsOnCannotBeTurnedOff) {
    controller_.setShowsInDock(false);
    EXPECT_TRUE(controller_.showsInDock());
    const auto menu = switches();
    EXPECT_FALSE(menu->actions().at(0)->isEnabled());
    EXPECT_EQ(menu->actions().at(0)->toolTip(), L::visibilityHint());
    EXPECT_TRUE(menu->actions().at(1)->isEnabled());

    controller_.toggleShowsInMenuBar();
    controller_.setShowsInDock(false);
    EXPECT_FALSE(windows_.isListed);
    controller_.toggleShowsInMenuBar();
    EXPECT_TRUE(controller_.showsInMenuBar());
    EXPECT_FALSE(switches()->actions().at(1)->isEnabled());
}

TEST_F(VisibilityControllerTest, AToolTipSaysWhyASwitchCannotBeTurnedOff) {
    const auto expectToolTips = [this](const QString& dock, const QString& menuBar) {
        const auto menu = switches();
        EXPECT_TRUE(menu->toolTipsVisible());
        EXPECT_EQ(menu->actions().at(0)->toolTip(), dock);
        EXPECT_EQ(menu->actions().at(1)->toolTip(), menuBar);
    };
    expectToolTips(L::visibilityHint(), L::showInMenuBar());
    controller_.toggleShowsInMenuBar();
    expectToolTips(L::showInDock(), L::showInMenuBar());
    controller_.setShowsInDock(false);
    expectToolTips(L::showInDock(), L::visibilityHint());
}

TEST_F(VisibilityControllerTest, TheSwitchesShowAndToggleTheirSettings) {
    auto menu = switches();
    EXPECT_EQ(menu->actions().at(0)->text(), L::showInDock());
    EXPECT_TRUE(menu->actions().at(0)->isChecked());
    EXPECT_EQ(menu->actions().at(1)->text(), L::showInMenuBar());
    EXPECT_FALSE(menu->actions().at(1)->isChecked());
    menu->actions().at(1)->trigger();
    EXPECT_TRUE(statusItem_.isVisible());
    EXPECT_EQ(preferences_.boolean(u"showInMenuBar"_s), true);
    switches()->actions().at(0)->trigger();
    EXPECT_FALSE(controller_.showsInDock());
    EXPECT_EQ(statusItem_.changes, 1);
}

TEST_F(VisibilityControllerTest, AShownLauncherIsShownAgainAfterTheChange) {
    controller_.toggleShowsInMenuBar();
    isShown_ = true;
    controller_.setShowsInDock(false);
    queue_.advance(0.19);
    EXPECT_EQ(shows_, 0);
    queue_.advance(0.01);
    EXPECT_EQ(shows_, 1);
    isShown_ = false;
    controller_.setShowsInDock(true);
    queue_.advance(1);
    EXPECT_EQ(shows_, 1);
}

TEST_F(VisibilityControllerTest, AClickOnTheStatusItemTogglesTheLauncher) {
    statusItem_.actions.clicked();
    EXPECT_EQ(toggles_, 1);
}

TEST_F(VisibilityControllerTest, TheStatusMenusEntriesStandInOrder) {
    controller_.addSettingsItems = [](QMenu& menu) { menu.addAction(u"setting"_s); };
    controller_.addUpdateItems = [](QMenu& menu) { menu.addAction(u"update"_s); };
    QMenu menu;
    statusItem_.actions.fillMenu(menu);
    QStringList titles;
    for (const QAction* action : menu.actions()) {
        titles += action->isSeparator() ? u"-"_s : action->text();
    }
    EXPECT_EQ(titles, (QStringList{L::toggleLauncher(), u"-"_s, L::showInDock(), L::showInMenuBar(),
                                   L::settings(), u"-"_s, L::about(), u"update"_s, u"-"_s, L::quit()}));
    EXPECT_EQ(menu.actions().at(4)->menu()->actions().constFirst()->text(), u"setting"_s);
}

TEST_F(VisibilityControllerTest, TheStatusMenusFirstEntryShowsTheChordOfTheLauncher) {
    controller_.addSettingsItems = [](QMenu&) {};
    controller_.addUpdateItems = [](QMenu&) {};
    QMenu menu;
    statusItem_.actions.fillMenu(menu);
    QAction& toggle = *menu.actions().constFirst();
    EXPECT_EQ(toggle.shortcut(), QKeySequence(u"Ctrl+Alt+Space"_s));
    EXPECT_EQ(toggle.shortcutContext(), Qt::WidgetShortcut) << "the chord is not this menu's";
    toggle.trigger();
    EXPECT_EQ(toggles_, 1);
}
