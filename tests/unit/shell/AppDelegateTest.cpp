#include "shell/AppDelegate.h"

#include "data/LayoutCoding.h"
#include "localization/L.h"
#include "motion/Timeline.h"
#include "platform/ActivationTokens.h"
#include "platform/ApplicationOpener.h"
#include "platform/Keyboard.h"
#include "platform/MotionPreference.h"
#include "platform/ScreenCapture.h"
#include "platform/ScrollDevices.h"
#include "platform/StatusItem.h"
#include "platform/WindowSystem.h"
#include "support/ManualQueue.h"
#include "support/MemoryFileSystem.h"
#include "support/MemoryPreferences.h"
#include "support/PlatformFakes.h"

#include <QApplication>
#include <QHash>
#include <QKeyEvent>
#include <QMenu>
#include <QMessageBox>
#include <QPushButton>
#include <QQuickWindow>
#include <QWindow>
#include <gtest/gtest.h>
#include <stdexcept>

using namespace amberquill;
using namespace Qt::StringLiterals;

namespace {

class FakeMotionPreference final : public MotionPreference {
public:
    [[nodiscard]] bool isReduced() const override { return reduced_; }
    void follow(std::function<void()> changed) override { changed_ = std::move(changed); }

    [[nodiscard]] bool isFollowed() const { return changed_ != nullptr; }
    void change(bool reduced) {
        reduced_ = reduced;
        changed_();
    }

private:
    bool reduced_ = false;
    std::function<void()> changed_;
};

class FakeWindowSystem final : public WindowSystem {
public:
    [[nodiscard]] QScreen* screenUnderPointer() const override { return nullptr; }
    void setActivationToken(const QString& token) override { token_ = token; }
    void present(QWindow&, QScreen*) override { presentedWith += std::exchange(token_, QString()); }
    void withdraw(QWindow&, std::function<void()> then) override {
        ++withdrawn;
        then();
    }
    void beep() override {}
    [[nodiscard]] bool nobodyHasFocus() const override { return nobody; }

    QStringList presentedWith; // the token of each showing
    int withdrawn = 0;
    bool nobody = false; // has the focus

private:
    QString token_;
};

class FakeStatusItem final : public StatusItem {
public:
    void setActions(Actions actions) override { actions_ = std::move(actions); }
    void setVisible(bool) override {}
    [[nodiscard]] bool isVisible() const override { return false; }

    void fill(QMenu& menu) { actions_.fillMenu(menu); }

private:
    Actions actions_;
};

class PlainKeyboard final : public Keyboard {
public:
    [[nodiscard]] char americanLetter(std::uint32_t) const override { return 0; }
};

class FakeBundle final : public MainBundle {
public:
    explicit FakeBundle(QHash<QString, QString> texts)
        : texts_(std::move(texts)) {}

    [[nodiscard]] std::optional<QString> text(const QString& key) const override {
        return texts_.contains(key) ? std::optional(texts_[key]) : std::nullopt;
    }

private:
    QHash<QString, QString> texts_;
};

class AppDelegateTest : public testing::Test {
protected:
    void SetUp() override {
        startupData_.names = {{u"/Applications/1.app"_s, u"Remembered"_s}};
        delegate_ = std::make_unique<AppDelegate>(services());
    }

    // Replaces the delegate. The bundle has these texts.
    void makeDelegate(const QHash<QString, QString>& bundle) {
        AppDelegate::Services withBundle = services();
        withBundle.bundle = std::make_shared<FakeBundle>(bundle);
        delegate_ = std::make_unique<AppDelegate>(std::move(withBundle));
    }

    AppDelegate::Services services() {
        return {
            .queue = queue_,
            .files = files_,
            .preferences = preferences_,
            .windows = windows_,
            .tokens = tokens_,
            .opener = opener_,
            .watcher = watcher_,
            .statusItem = statusItem_,
            .scrollDevices = devices_,
            .keyboard = keyboard_,
            .screens = screens_,
            .firstBackdrop = nullptr,
            .motion = motion_,
            .scan =
                [] {
                    return std::vector<AppInfo>{{u"/Applications/1.app"_s, u"One"_s}};
                },
            .finishStart = [] {},
            .retryIcons = [] {},
            .startupData = startupData_,
            .applicationSupport = u"/data"_s,
            .caches = u"/cache"_s,
            .language = u"en"_s,
            .watchedFolders = {u"/Applications"_s},
        };
    }

    // The entry of the launcher's menu with this title.
    [[nodiscard]] static QAction& item(const QMenu& menu, const QString& title) {
        const QList<QAction*> actions = menu.actions();
        const auto found = std::find_if(actions.begin(), actions.end(),
                                        [&title](const QAction* action) { return action->text() == title; });
        if (found == actions.end()) {
            throw std::out_of_range("no such entry");
        }
        return **found;
    }

    // The about panel; null: it is not up.
    static QMessageBox* aboutPanel() {
        for (QWidget* each : QApplication::topLevelWidgets()) {
            if (each->isVisible() && each->windowTitle() == L::about()) {
                return qobject_cast<QMessageBox*>(each);
            }
        }
        return nullptr;
    }

    static QMessageBox* alert() { return qobject_cast<QMessageBox*>(QApplication::activeModalWidget()); }

    static void closeADialog() {
        QWindow dialog;
        dialog.setFlag(Qt::Dialog);
        QEvent hide(QEvent::Hide);
        QCoreApplication::sendEvent(&dialog, &hide);
    }

    void setState(Qt::ApplicationState state) { Q_EMIT qGuiApp->applicationStateChanged(state); }

    ManualQueue queue_;
    MemoryFileSystem files_;
    MemoryPreferences preferences_;
    FakeWindowSystem windows_;
    NullActivationTokens tokens_;
    FailingOpener opener_;
    ManualFolderWatcher watcher_;
    FakeStatusItem statusItem_;
    StartupData startupData_;
    NullScrollDevices devices_;
    PlainKeyboard keyboard_;
    NullScreenCapture screens_;
    FakeMotionPreference motion_;
    std::unique_ptr<AppDelegate> delegate_;
};

} // namespace

TEST_F(AppDelegateTest, EveryStartShowsTheLauncher) {
    delegate_->applicationDidFinishLaunching();
    EXPECT_TRUE(delegate_->model().presented());
    EXPECT_TRUE(delegate_->model().isScanning());
    EXPECT_EQ(delegate_->model().appName(u"/Applications/1.app"_s), u"Remembered"_s);
    queue_.runPosted();
    EXPECT_EQ(delegate_->model().appName(u"/Applications/1.app"_s), u"One"_s);
}

TEST_F(AppDelegateTest, AFocusThatReturnsDuringTheFadeOutShowsNothing) {
    delegate_->applicationDidFinishLaunching();
    setState(Qt::ApplicationActive);
    const QWindowList windows = QGuiApplication::topLevelWindows();
    const auto launcher = std::find_if(windows.begin(), windows.end(), [](const QWindow* window) {
        return window->title() == u"Amberquill"_s;
    });
    ASSERT_NE(launcher, windows.end());
    (*launcher)->setVisible(true);
    setState(Qt::ApplicationInactive);
    EXPECT_FALSE(delegate_->model().presented());
    setState(Qt::ApplicationActive);
    EXPECT_FALSE(delegate_->model().presented()) << "the user did not ask for it";
    setState(Qt::ApplicationInactive);
    (*launcher)->setVisible(false);
    setState(Qt::ApplicationActive);
    EXPECT_TRUE(delegate_->model().presented());
}

TEST_F(AppDelegateTest, TheAboutPanelAndTheUpdateAlertShowTheBundlesVersion) {
    makeDelegate({{u"CFBundleShortVersionString"_s, u"7.5"_s}});
    delegate_->applicationDidFinishLaunching();
    for (const auto& entry : delegate_->mainMenu().menus().front().items) {
        if (entry->text() == L::about()) {
            entry->trigger();
        }
    }
    QMessageBox* panel = aboutPanel();
    ASSERT_NE(panel, nullptr);
    EXPECT_EQ(panel->informativeText(), u"7.5"_s);
    item(*delegate_->menu().make(), L::checkForUpdates()).trigger();
    ASSERT_NE(alert(), nullptr);
    EXPECT_EQ(alert()->informativeText(), L::upToDateMessage(u"7.5"_s));
    alert()->close();
    panel->close();
    QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
}

TEST_F(AppDelegateTest, TheAboutPanelHidesTheLauncherAndKeepsItHiddenUntilItIsClosed) {
    delegate_->applicationDidFinishLaunching();
    setState(Qt::ApplicationActive);
    QMenu status;
    statusItem_.fill(status);
    item(status, L::about()).trigger();
    EXPECT_FALSE(delegate_->model().presented());
    EXPECT_EQ(LauncherWindowController::auxiliaryFlows(), QSet{u"about"_s});
    QMessageBox* panel = aboutPanel();
    ASSERT_NE(panel, nullptr);
    panel->hide(); // no window is left: only the flow keeps the launcher hidden
    setState(Qt::ApplicationInactive);
    setState(Qt::ApplicationActive);
    EXPECT_FALSE(delegate_->model().presented());
    panel->close();
    QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
    EXPECT_EQ(LauncherWindowController::auxiliaryFlows(), QSet<QString>());
    setState(Qt::ApplicationInactive);
    setState(Qt::ApplicationActive);
    EXPECT_TRUE(delegate_->model().presented());
}

TEST_F(AppDelegateTest, LosingTheFocusToAnotherApplicationHides) {
    delegate_->applicationDidFinishLaunching();
    setState(Qt::ApplicationInactive);
    EXPECT_TRUE(delegate_->model().presented()) << "it never had the focus";
    setState(Qt::ApplicationActive);
    setState(Qt::ApplicationInactive);
    EXPECT_FALSE(delegate_->model().presented());
}

TEST_F(AppDelegateTest, AToggleHidesAnActiveLauncherAndElseShowsIt) {
    delegate_->applicationDidFinishLaunching();
    EXPECT_EQ(windows_.presentedWith.size(), 1);
    delegate_->toggleLauncher();
    EXPECT_TRUE(delegate_->model().presented()) << "shown, but another window has the focus";
    EXPECT_EQ(windows_.presentedWith.size(), 2);
    setState(Qt::ApplicationActive);
    delegate_->toggleLauncher();
    EXPECT_FALSE(delegate_->model().presented());
    setState(Qt::ApplicationInactive);
    delegate_->toggleLauncher();
    EXPECT_TRUE(delegate_->model().presented());
    EXPECT_EQ(windows_.presentedWith.size(), 3);
}

TEST_F(AppDelegateTest, RequestsFromOutsideShowAndHide) {
    delegate_->applicationDidFinishLaunching();
    delegate_->hideLauncher();
    EXPECT_FALSE(delegate_->model().presented());
    delegate_->showLauncher();
    EXPECT_TRUE(delegate_->model().presented());
    delegate_->showLauncher();
    EXPECT_TRUE(delegate_->model().presented());
    EXPECT_EQ(windows_.presentedWith.size(), 3);
}

TEST_F(AppDelegateTest, ATokenIsUsedForOneShowing) {
    delegate_->applicationDidFinishLaunching();
    delegate_->showLauncher(u"first"_s);
    delegate_->showLauncher();
    delegate_->toggleLauncher({.token = u"second"_s});
    EXPECT_EQ(windows_.presentedWith, (QStringList{u""_s, u"first"_s, u""_s, u"second"_s}));
}

TEST_F(AppDelegateTest, ARequestDuringTheStartIsMetByTheStart) {
    delegate_->toggleLauncher({.token = u"token"_s});
    delegate_->hideLauncher();
    delegate_->showLauncher();
    delegate_->applicationDidFinishLaunching();
    EXPECT_TRUE(delegate_->model().presented());
    EXPECT_EQ(windows_.presentedWith, QStringList{u"token"_s});
}

TEST_F(AppDelegateTest, AStartThatIsAskedToHideShowsNothing) {
    delegate_->toggleLauncher();
    delegate_->hideLauncher();
    delegate_->applicationDidFinishLaunching();
    queue_.runPosted();
    EXPECT_FALSE(delegate_->model().presented());
    EXPECT_EQ(windows_.presentedWith.size(), 0);
    EXPECT_TRUE(motion_.isFollowed()) << "the start has ended";
    delegate_->showLauncher(u"token"_s);
    EXPECT_TRUE(delegate_->model().presented());
    EXPECT_EQ(windows_.presentedWith, QStringList{u"token"_s});
}

TEST_F(AppDelegateTest, TheWindowGetsTheProgramsIconTwoSecondsAfterTheStart) {
    delegate_->hideLauncher();
    delegate_->applicationDidFinishLaunching();
    queue_.runPosted();
    const auto icon = [] {
        QIcon found;
        for (QWindow* window : QGuiApplication::allWindows()) {
            if (qobject_cast<QQuickWindow*>(window) != nullptr) {
                found = window->icon();
            }
        }
        return found;
    };
    EXPECT_TRUE(icon().isNull());
    queue_.advance(2);
    EXPECT_FALSE(icon().isNull());
}

TEST_F(AppDelegateTest, BecomingActiveShowsTheLauncher) {
    delegate_->applicationDidFinishLaunching();
    setState(Qt::ApplicationActive);
    delegate_->hideLauncher();
    setState(Qt::ApplicationInactive);
    setState(Qt::ApplicationActive);
    EXPECT_TRUE(delegate_->model().presented());
    EXPECT_EQ(windows_.presentedWith.size(), 2);
    setState(Qt::ApplicationInactive);
    setState(Qt::ApplicationActive);
    EXPECT_EQ(windows_.presentedWith.size(), 3);
}

TEST_F(AppDelegateTest, AFocusThatArrivesAfterTheHideShowsNothing) {
    delegate_->applicationDidFinishLaunching();
    delegate_->hideLauncher();
    setState(Qt::ApplicationActive);
    EXPECT_FALSE(delegate_->model().presented());
    setState(Qt::ApplicationInactive);
    delegate_->showLauncher();
    delegate_->hideLauncher();
    setState(Qt::ApplicationActive);
    EXPECT_FALSE(delegate_->model().presented());
    EXPECT_EQ(windows_.presentedWith.size(), 2);
    setState(Qt::ApplicationInactive);
    setState(Qt::ApplicationActive);
    EXPECT_TRUE(delegate_->model().presented()) << "not requested by a showing";
}

TEST_F(AppDelegateTest, TheEndOfAFocusFromBeforeTheHideHidesNothing) {
    delegate_->applicationDidFinishLaunching();
    setState(Qt::ApplicationActive);
    delegate_->hideLauncher();
    delegate_->showLauncher();
    setState(Qt::ApplicationInactive);
    EXPECT_TRUE(delegate_->model().presented());
    setState(Qt::ApplicationActive);
    setState(Qt::ApplicationInactive);
    EXPECT_FALSE(delegate_->model().presented());
}

TEST_F(AppDelegateTest, AFocusLostWithADialogIsWaitedForBeforeTheLauncherHides) {
    delegate_->applicationDidFinishLaunching();
    setState(Qt::ApplicationActive);
    windows_.nobody = true;
    closeADialog();
    setState(Qt::ApplicationInactive);
    EXPECT_TRUE(delegate_->model().presented());
    queue_.advance(0.1);
    EXPECT_TRUE(delegate_->model().presented());
    queue_.advance(3);
    EXPECT_FALSE(delegate_->model().presented()) << "it never came";
}

TEST_F(AppDelegateTest, AFocusLostWithADialogMayReturn) {
    delegate_->applicationDidFinishLaunching();
    setState(Qt::ApplicationActive);
    windows_.nobody = true;
    closeADialog();
    setState(Qt::ApplicationInactive);
    windows_.nobody = false;
    setState(Qt::ApplicationActive);
    queue_.advance(3);
    EXPECT_TRUE(delegate_->model().presented());
}

TEST_F(AppDelegateTest, ALauncherShownAsAnotherWindowClosesStaysUp) {
    delegate_->applicationDidFinishLaunching();
    setState(Qt::ApplicationActive);
    delegate_->hideLauncher();
    setState(Qt::ApplicationInactive);
    closeADialog();
    delegate_->showLauncher();
    queue_.advance(3);
    EXPECT_TRUE(delegate_->model().presented()) << "the window manager may be slow to give it the focus";
}

TEST_F(AppDelegateTest, BecomingActiveLeavesAShownLauncherAlone) {
    delegate_->applicationDidFinishLaunching();
    setState(Qt::ApplicationActive);
    EXPECT_EQ(windows_.presentedWith.size(), 1);
}

TEST_F(AppDelegateTest, BecomingActiveCoversNoOtherWindow) {
    delegate_->applicationDidFinishLaunching();
    delegate_->hideLauncher();
    setState(Qt::ApplicationActive);
    setState(Qt::ApplicationInactive);
    QWindow dialog;
    dialog.setFlag(Qt::Dialog);
    dialog.setVisible(true);
    setState(Qt::ApplicationActive);
    EXPECT_FALSE(delegate_->model().presented());
}

TEST_F(AppDelegateTest, TheEndTakesTheLauncherOffTheScreenAtOnce) {
    delegate_->applicationDidFinishLaunching();
    delegate_->quit();
    EXPECT_EQ(windows_.withdrawn, 1);
    EXPECT_FALSE(delegate_->model().presented());
}

TEST_F(AppDelegateTest, TheLayoutIsSavedAtTheEnd) {
    files_.addFile(u"/data/Amberquill/layout.json"_s, "[ {\"app\" : {\"_0\" : \"/Applications/1.app\"}} ]");
    startupData_.layout = LayoutStore::read(files_, u"/data"_s);
    makeDelegate({});
    delegate_->applicationDidFinishLaunching();
    Q_EMIT qGuiApp->aboutToQuit({});
    EXPECT_EQ(files_.file(u"/data/Amberquill/layout.json"_s),
              encodeItems({LaunchItem::app(u"/Applications/1.app"_s)}));
    EXPECT_EQ(preferences_.flushes, 1);
}

TEST_F(AppDelegateTest, AutomaticChecksWaitForLatePreferences) {
    startupData_.preferencesAreLate = true;
    for (const bool isWanted : {true, false}) {
        makeDelegate({{u"SUFeedURL"_s, u"https://example.org/feed.xml"_s}});
        delegate_->applicationDidFinishLaunching();
        const auto timers = queue_.timers();
        preferences_.setBoolean(u"SUEnableAutomaticChecks"_s, isWanted);
        delegate_->takeLatePreferences();
        EXPECT_EQ(queue_.timers(), timers + (isWanted ? 1 : 0));
    }
}

TEST_F(AppDelegateTest, AnotherLanguageReplacesTheMainMenu) {
    L::setLanguage(AppLanguage::English);
    delegate_->applicationDidFinishLaunching();
    EXPECT_EQ(delegate_->mainMenu().menus()[1].title, u"Edit"_s);
    delegate_->model().setLanguage(AppLanguage::French);
    EXPECT_EQ(delegate_->mainMenu().menus()[1].title, u"Édition"_s);
    L::setLanguage(AppLanguage::System);
}

TEST_F(AppDelegateTest, TheMainMenusKeysWorkWhileTheLauncherIsUp) {
    delegate_->applicationDidFinishLaunching();
    QWindow* launcher = nullptr;
    for (QWindow* window : QGuiApplication::allWindows()) {
        launcher = qobject_cast<QQuickWindow*>(window) != nullptr ? window : launcher;
    }
    ASSERT_NE(launcher, nullptr);
    for (const int key : {Qt::Key_W, Qt::Key_H}) {
        QKeyEvent press(QEvent::KeyPress, key, Qt::ControlModifier);
        QCoreApplication::sendEvent(launcher, &press);
        EXPECT_FALSE(delegate_->model().presented());
        delegate_->showLauncher();
    }
}

TEST_F(AppDelegateTest, TheMotionPreferenceIsFollowedFromTheFirstFrameOn) {
    delegate_->applicationDidFinishLaunching();
    queue_.advance(10);
    QCoreApplication::processEvents();
    EXPECT_FALSE(motion_.isFollowed());
    for (QWindow* window : QGuiApplication::allWindows()) {
        if (auto* quick = qobject_cast<QQuickWindow*>(window)) {
            Q_EMIT quick->frameSwapped();
        }
    }
    QCoreApplication::processEvents();
    ASSERT_TRUE(motion_.isFollowed());
    EXPECT_FALSE(Timeline::shared().isReduced());
    motion_.change(true);
    EXPECT_TRUE(Timeline::shared().isReduced());
    motion_.change(false);
    EXPECT_FALSE(Timeline::shared().isReduced());
}

TEST_F(AppDelegateTest, APressThatArrivesByTwoRoutesTogglesOnce) {
    delegate_->applicationDidFinishLaunching();
    setState(Qt::ApplicationActive);
    delegate_->toggleByPress(PressRoute::HotKey, {});
    EXPECT_FALSE(delegate_->model().presented());
    queue_.advance(0.02);
    delegate_->toggleByPress(PressRoute::Bus, {});
    EXPECT_FALSE(delegate_->model().presented()) << "the same press again";
    queue_.advance(0.02);
    delegate_->toggleByPress(PressRoute::HotKey, {});
    EXPECT_TRUE(delegate_->model().presented()) << "a second press";
    queue_.advance(1);
    delegate_->toggleByPress(PressRoute::Bus, {});
    EXPECT_FALSE(delegate_->model().presented());
}

TEST_F(AppDelegateTest, BothMenusHaveTheUpdateEntriesInTheirPlaces) {
    L::setLanguage(AppLanguage::English);
    delegate_->applicationDidFinishLaunching();
    const auto titles = [](const QMenu& menu) {
        QStringList found;
        for (const QAction* action : menu.actions()) {
            found += action->isSeparator() ? u"-"_s : action->text();
        }
        return found.join(u'|');
    };
    const QString entries = L::checkForUpdates() + u'|' + L::checkAutomatically();
    EXPECT_TRUE(titles(*delegate_->menu().make()).contains(L::openAtLogin() + u'|' + entries + u"|-|"_s));
    QMenu status;
    statusItem_.fill(status);
    EXPECT_TRUE(titles(status).contains(u"-|"_s + L::about() + u'|' + entries + u"|-|"_s + L::quit()));
    L::setLanguage(AppLanguage::System);
}

TEST_F(AppDelegateTest, WithoutAFeedACheckAnswersUpToDateAtOnce) {
    makeDelegate({{u"CFBundleShortVersionString"_s, u"4.5"_s}});
    delegate_->applicationDidFinishLaunching();
    setState(Qt::ApplicationActive);
    item(*delegate_->menu().make(), L::checkForUpdates()).trigger();
    EXPECT_FALSE(delegate_->model().presented());
    ASSERT_NE(alert(), nullptr);
    EXPECT_EQ(alert()->text(), L::upToDate());
    EXPECT_EQ(alert()->informativeText(), L::upToDateMessage(u"4.5"_s));
    setState(Qt::ApplicationInactive);
    setState(Qt::ApplicationActive);
    EXPECT_FALSE(delegate_->model().presented()) << "the launcher does not cover the alert";
    alert()->button(QMessageBox::Ok)->click();
    setState(Qt::ApplicationInactive);
    setState(Qt::ApplicationActive);
    EXPECT_TRUE(delegate_->model().presented());
}

TEST_F(AppDelegateTest, WithoutAVersionInTheBundleTheVersionIsZero) {
    delegate_->applicationDidFinishLaunching();
    item(*delegate_->menu().make(), L::checkForUpdates()).trigger();
    ASSERT_NE(alert(), nullptr);
    EXPECT_EQ(alert()->informativeText(), L::upToDateMessage(u"0"_s));
    alert()->close();
}

TEST_F(AppDelegateTest, TheSwitchForAutomaticChecksIsStored) {
    delegate_->applicationDidFinishLaunching();
    for (const bool wasOn : {true, false}) {
        const auto menu = delegate_->menu().make();
        EXPECT_EQ(item(*menu, L::checkAutomatically()).isChecked(), wasOn);
        item(*menu, L::checkAutomatically()).trigger();
    }
    EXPECT_TRUE(item(*delegate_->menu().make(), L::checkAutomatically()).isChecked());
    EXPECT_EQ(preferences_.boolean(u"SUEnableAutomaticChecks"_s), true);
}

TEST_F(AppDelegateTest, TheUpdaterStartsWithTheProgramButChecksLater) {
    // No server listens on this port.
    const QHash<QString, QString> bundle = {{u"SUFeedURL"_s, u"http://127.0.0.1:1/feed"_s}};
    const QString lastCheck = u"SULastCheckTime"_s;
    const auto anHour = std::chrono::hours(1);
    queue_.setDate(queue_.date() + std::chrono::hours(24 * 365));
    makeDelegate(bundle);
    queue_.setDate(queue_.date() + anHour);
    queue_.advance(3600);
    EXPECT_FALSE(preferences_.contains(lastCheck)) << "not before the launch";
    delegate_->applicationDidFinishLaunching();
    queue_.runPosted();
    EXPECT_FALSE(preferences_.contains(lastCheck));
    queue_.setDate(queue_.date() + anHour);
    queue_.advance(3600);
    EXPECT_TRUE(preferences_.contains(lastCheck));
}

TEST_F(AppDelegateTest, NoAutomaticCheckRunsWhileADialogOrAMenuIsOpen) {
    const QString lastCheck = u"SULastCheckTime"_s;
    queue_.setDate(queue_.date() + std::chrono::hours(24 * 365));
    makeDelegate({{u"SUFeedURL"_s, u"http://127.0.0.1:1/feed"_s}});
    delegate_->applicationDidFinishLaunching();
    queue_.setDate(queue_.date() + std::chrono::hours(1));
    QMenu menu;
    menu.addAction(u"entry"_s);
    menu.popup({});
    queue_.advance(3600);
    EXPECT_FALSE(preferences_.contains(lastCheck));
    menu.close();
    QMessageBox box;
    box.show();
    queue_.advance(60);
    EXPECT_FALSE(preferences_.contains(lastCheck));
    box.close();
    queue_.advance(60);
    EXPECT_TRUE(preferences_.contains(lastCheck));
}

TEST_F(AppDelegateTest, NoAutomaticCheckRunsDuringADrag) {
    const QString lastCheck = u"SULastCheckTime"_s;
    queue_.setDate(queue_.date() + std::chrono::hours(24 * 365));
    files_.addFile(u"/data/Amberquill/layout.json"_s, "[ {\"app\" : {\"_0\" : \"/Applications/1.app\"}} ]");
    startupData_.layout = LayoutStore::read(files_, u"/data"_s);
    makeDelegate({{u"SUFeedURL"_s, u"http://127.0.0.1:1/feed"_s}});
    delegate_->applicationDidFinishLaunching();
    LauncherModel& model = delegate_->model();
    model.setSize({1500, 892});
    queue_.setDate(queue_.date() + std::chrono::hours(1));
    const QPointF icon = model.metrics().cellCenter(0) - QPointF(0, 12);
    model.pointerChanged({icon, icon});
    model.pointerChanged({icon, icon + QPointF(20, 0)});
    ASSERT_TRUE(model.drag().has_value());
    queue_.advance(3600);
    EXPECT_FALSE(preferences_.contains(lastCheck));
    model.pointerEnded({icon, icon + QPointF(20, 0)});
    queue_.advance(61);
    EXPECT_TRUE(preferences_.contains(lastCheck));
}
