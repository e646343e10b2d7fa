#include "window/LauncherWindowController.h"

#include "motion/Animation.h"
#include "platform/ActivationTokens.h"
#include "platform/ApplicationOpener.h"
#include "platform/ScreenCapture.h"
#include "platform/ScrollDevices.h"
#include "platform/WindowSystem.h"
#include "support/LogRecorder.h"
#include "support/ModelFixture.h"
#include "views/BackgroundLayer.h"

#include <QAccessible>
#include <QClipboard>
#include <QCoreApplication>
#include <QGuiApplication>
#include <QInputMethodEvent>
#include <QKeyEvent>
#include <QMenu>
#include <QQuickItem>
#include <QScreen>
#include <QStyleHints>
#include <QWheelEvent>
#include <QWindow>

using namespace amberquill;
using namespace Qt::StringLiterals;

namespace {

class RecordingWindowSystem final : public WindowSystem {
public:
    [[nodiscard]] QScreen* screenUnderPointer() const override { return QGuiApplication::primaryScreen(); }
    [[nodiscard]] bool blursBehindWindows() const override { return blurs; }
    void present(QWindow& window, QScreen* screen) override {
        alphaWhenPresented = static_cast<QQuickView&>(window).rootObject()->opacity();
        presentedOn.push_back(screen);
    }
    void withdraw(QWindow& /*window*/, std::function<void()> then) override {
        if (isSlow) {
            pending = std::move(then);
            return;
        }
        ++withdrawn;
        then();
    }
    void beep() override { ++beeps; }

    bool blurs = false;
    std::vector<QScreen*> presentedOn;
    double alphaWhenPresented = -1;
    int withdrawn = 0;
    bool isSlow = false; // whether withdrawing waits in `pending`
    std::function<void()> pending;
    int beeps = 0;
};

class HeldTokens final : public ActivationTokens {
public:
    void request(QWindow& /*window*/, const QString& applicationPath,
                 std::function<void(QString)> then) override {
        asked.append(applicationPath);
        if (hold) {
            held = std::move(then);
        } else {
            then(u"token"_s);
        }
    }

    bool hold = false;
    QStringList asked;
    std::function<void(QString)> held;
};

class RecordingOpener final : public ApplicationOpener {
public:
    void open(const QString& path, const QString& token, std::function<void(bool)> done) override {
        opened.append(path + u' ' + token);
        done(succeeds);
    }
    void openPage(const QUrl&, const QString&, std::function<void(bool)> done) override { done(false); }

    bool succeeds = true;
    QStringList opened;
};

class CountingCapture final : public ScreenCapture {
public:
    [[nodiscard]] ScreenArea area(const QScreen*) const override {
        ++areas;
        return {};
    }
    [[nodiscard]] ScreenPicture capture(const ScreenArea&, int, bool) override { return {}; }

    mutable int areas = 0; // calls of area()
};

// The first item below `top`, in depth, that matches; null: there is none.
QQuickItem* itemBelow(const QQuickItem* top, const std::function<bool(const QQuickItem&)>& matches) {
    for (QQuickItem* child : top->childItems()) {
        if (QQuickItem* found = matches(*child) ? child : itemBelow(child, matches)) {
            return found;
        }
    }
    return nullptr;
}

class LauncherWindowControllerTest : public ModelFixture {
protected:
    void SetUp() override {
        ModelFixture::SetUp();
        installed_ = apps(80);
        LauncherModel& model = makeModel();
        shower_ = std::make_shared<LauncherWindowController>(
            LauncherWindowController::Services{.model = model,
                                               .queue = queue_,
                                               .windows = windows_,
                                               .tokens = tokens_,
                                               .opener = opener_,
                                               .scrollDevices = devices_,
                                               .screens = screens_});
        model.setController(shower_);
    }

    void TearDown() override {
        shower_.reset();
        ModelFixture::TearDown();
    }

    // Advances time in frames.
    void pass(double seconds) {
        constexpr double frame = 1.0 / 120;
        for (double passed = 0; passed + frame / 2 < seconds; passed += frame) {
            queue_.advance(frame);
            Timeline::shared().advance();
        }
    }

    // The background's image; null: it has been freed.
    [[nodiscard]] const QImage& background() const {
        return shower_->window().rootObject()->findChild<BackgroundLayer*>()->picture();
    }

    [[nodiscard]] double alpha() const { return shower_->window().rootObject()->opacity(); }

    bool key(int code, Qt::KeyboardModifiers modifiers = {}, const QString& text = {}) {
        QKeyEvent event(QEvent::KeyPress, code, modifiers, text);
        event.ignore();
        return QCoreApplication::sendEvent(&shower_->window(), &event) && event.isAccepted();
    }

    RecordingWindowSystem windows_;
    HeldTokens tokens_;
    RecordingOpener opener_;
    NullScrollDevices devices_;
    CountingCapture screens_;
    std::shared_ptr<LauncherWindowController> shower_;
};

const QString application = u"/Applications/1.app"_s;

} // namespace

TEST_F(LauncherWindowControllerTest, ShowingCoversTheScreenFadesInAndScans) {
    EXPECT_FALSE(shower_->isShown());
    shower_->show();
    EXPECT_TRUE(shower_->isShown());
    EXPECT_EQ(windows_.presentedOn, std::vector<QScreen*>{QGuiApplication::primaryScreen()});
    EXPECT_EQ(shower_->window().geometry(), QGuiApplication::primaryScreen()->geometry());
    EXPECT_EQ(windows_.alphaWhenPresented, 0);
    EXPECT_TRUE(model_->isScanning());
    EXPECT_TRUE(model_->presented());
    pass(0.1);
    EXPECT_GT(alpha(), 0.2);
    EXPECT_LT(alpha(), 1);
    pass(0.12);
    EXPECT_EQ(alpha(), 1);
    EXPECT_EQ(scans_, 1);
}

TEST_F(LauncherWindowControllerTest, EveryShowFocusesTheSearchField) {
    const int token = model_->focusSearchToken();
    shower_->show();
    EXPECT_EQ(model_->focusSearchToken(), token) << "not before the window is up";
    queue_.runPosted();
    EXPECT_EQ(model_->focusSearchToken(), token + 1);
    shower_->show();
    queue_.runPosted();
    EXPECT_EQ(model_->focusSearchToken(), token + 2);
}

TEST_F(LauncherWindowControllerTest, ASecondShowRaisesTheWindowWithoutStartingOver) {
    shower_->show();
    pass(0.3);
    shower_->show();
    EXPECT_EQ(windows_.presentedOn.size(), 2U);
    pass(0.02);
    EXPECT_EQ(alpha(), 1);
    EXPECT_EQ(scans_, 1);
}

TEST_F(LauncherWindowControllerTest, AVisibleWindowIsMovedByTheWindowSystemAlone) {
    shower_->show();
    shower_->window().show();
    const QRect elsewhere(10, 10, 300, 200);
    shower_->window().setGeometry(elsewhere);
    shower_->show();
    EXPECT_EQ(windows_.presentedOn.size(), 2U);
    EXPECT_EQ(shower_->window().geometry(), elsewhere);
}

TEST_F(LauncherWindowControllerTest, HidingFadesOutAndThenWithdrawsTheWindow) {
    shower_->show();
    pass(0.5);
    shower_->hide(std::nullopt);
    EXPECT_FALSE(shower_->isShown());
    EXPECT_FALSE(model_->presented());
    pass(0.14);
    EXPECT_EQ(windows_.withdrawn, 0);
    pass(0.02);
    EXPECT_EQ(windows_.withdrawn, 1);
    EXPECT_EQ(alpha(), 0);
    EXPECT_TRUE(opener_.opened.isEmpty());
}

TEST_F(LauncherWindowControllerTest, TheContentIsPresentedOnItsSpringAndHiddenOnItsCurve) {
    std::optional<Animation> carried;
    QObject::connect(model_.get(), &LauncherModel::presentedChanged,
                     [&carried] { carried = currentAnimation(); });
    shower_->show();
    EXPECT_EQ(carried, spring(0.35, 0.9));
    shower_->hide(std::nullopt);
    EXPECT_EQ(carried, easeIn(0.15));
}

TEST_F(LauncherWindowControllerTest, TheWindowFadesInForAFifthOfASecond) {
    shower_->show();
    pass(0.05);
    EXPECT_NEAR(alpha(), easeProgress(Animation::Curve::EaseBoth, 0.25), 0.001);
    pass(0.1);
    EXPECT_NEAR(alpha(), easeProgress(Animation::Curve::EaseBoth, 0.75), 0.001);
    pass(0.05);
    EXPECT_NEAR(alpha(), 1, 0.001);
}

TEST_F(LauncherWindowControllerTest, TheWindowFadesOutFaster) {
    shower_->show();
    pass(0.5);
    shower_->hide(std::nullopt);
    pass(0.05);
    EXPECT_NEAR(alpha(), 1 - easeProgress(Animation::Curve::EaseBoth, 1.0 / 3), 0.001);
    pass(0.05);
    EXPECT_NEAR(alpha(), 1 - easeProgress(Animation::Curve::EaseBoth, 2.0 / 3), 0.001);
    pass(0.05);
    EXPECT_NEAR(alpha(), 0, 0.001);
}

TEST_F(LauncherWindowControllerTest, ClosingTheWindowHidesIt) {
    for (int i = 0; i < 2; ++i) {
        shower_->show();
        shower_->window().show();
        pass(0.5);
        EXPECT_TRUE(shower_->window().close()) << "whoever quits the program is not held up";
        EXPECT_FALSE(shower_->isShown());
        EXPECT_TRUE(shower_->window().isVisible()) << "it fades";
        shower_->window().close();
        EXPECT_TRUE(shower_->window().isVisible());
        pass(0.2);
        EXPECT_EQ(windows_.withdrawn, i + 1);
    }
}

TEST_F(LauncherWindowControllerTest, AnApplicationIsOpenedOnceTheFadeIsOver) {
    shower_->show();
    pass(0.5);
    shower_->hide(application);
    EXPECT_EQ(tokens_.asked, QStringList{application}) << "while the window still has the focus";
    pass(0.14);
    EXPECT_TRUE(opener_.opened.isEmpty());
    pass(0.02);
    EXPECT_EQ(opener_.opened, QStringList{application + u" token"_s});
    EXPECT_EQ(windows_.withdrawn, 1);
}

TEST_F(LauncherWindowControllerTest, OpeningWaitsForALateToken) {
    tokens_.hold = true;
    shower_->show();
    shower_->hide(application);
    pass(0.2);
    EXPECT_EQ(windows_.withdrawn, 1);
    EXPECT_TRUE(opener_.opened.isEmpty());
    tokens_.held(u"late"_s);
    EXPECT_EQ(opener_.opened, QStringList{application + u" late"_s});
}

TEST_F(LauncherWindowControllerTest, OpeningWaitsForASlowWithdrawal) {
    windows_.isSlow = true;
    shower_->show();
    shower_->hide(application);
    pass(0.2);
    ASSERT_TRUE(windows_.pending);
    EXPECT_TRUE(opener_.opened.isEmpty());
    windows_.pending();
    EXPECT_EQ(opener_.opened, QStringList{application + u" token"_s});
}

TEST_F(LauncherWindowControllerTest, AShowDuringASlowWithdrawalWinsAndTheLaunchIsDropped) {
    windows_.isSlow = true;
    shower_->show();
    shower_->hide(application);
    pass(0.2);
    ASSERT_TRUE(windows_.pending);
    shower_->show();
    windows_.pending();
    pass(0.5);
    EXPECT_EQ(alpha(), 1);
    EXPECT_TRUE(opener_.opened.isEmpty());
}

TEST_F(LauncherWindowControllerTest, LeavingWithdrawsTheWindowOnceAndNothingShowsItMeanwhile) {
    shower_->show();
    pass(0.5);
    bool hasLeft = false;
    windows_.isSlow = true;
    shower_->leave([&hasLeft] { hasLeft = true; });
    EXPECT_FALSE(hasLeft);
    shower_->show();
    EXPECT_FALSE(shower_->isShown());
    EXPECT_EQ(windows_.presentedOn.size(), 1U);
    std::exchange(windows_.pending, nullptr)();
    EXPECT_TRUE(hasLeft);
    pass(0.5);
    EXPECT_FALSE(windows_.pending);
}

TEST_F(LauncherWindowControllerTest, AnEndThatIsRefusedLetsTheLauncherBeShown) {
    shower_->show();
    shower_->leave([] {});
    shower_->show();
    EXPECT_TRUE(shower_->isShown());
    pass(0.5);
    EXPECT_EQ(alpha(), 1);
    EXPECT_EQ(windows_.presentedOn.size(), 2U);
}

TEST_F(LauncherWindowControllerTest, AShowDuringTheFadeWinsAndTheLaunchIsDropped) {
    shower_->show();
    pass(0.5);
    shower_->hide(application);
    pass(0.1);
    ASSERT_LT(alpha(), 1);
    shower_->show();
    EXPECT_EQ(alpha(), 0) << "the fade-in starts afresh";
    EXPECT_EQ(windows_.alphaWhenPresented, 0);
    pass(0.5);
    EXPECT_EQ(alpha(), 1);
    EXPECT_EQ(windows_.withdrawn, 0);
    EXPECT_TRUE(opener_.opened.isEmpty());
    EXPECT_EQ(scans_, 2);
    EXPECT_TRUE(shower_->isShown());
}

TEST_F(LauncherWindowControllerTest, AFadeInterruptedByAShowDoesNotEndALaterOne) {
    shower_->show();
    pass(0.5);
    shower_->hide(application);
    pass(0.1);
    shower_->show();
    pass(0.02);
    shower_->hide(std::nullopt);
    pass(0.04); // 0.16 s after the first hide, 0.04 s after the second
    EXPECT_EQ(windows_.withdrawn, 0);
    pass(0.12);
    EXPECT_EQ(windows_.withdrawn, 1);
    EXPECT_TRUE(opener_.opened.isEmpty());
}

TEST_F(LauncherWindowControllerTest, WhileHiddenAnApplicationIsOpenedAtOnce) {
    shower_->hide(application);
    EXPECT_EQ(opener_.opened, QStringList{application + u' '});
    EXPECT_EQ(windows_.withdrawn, 0);
    shower_->hide(std::nullopt);
    EXPECT_EQ(windows_.withdrawn, 0);
}

TEST_F(LauncherWindowControllerTest, AFailedLaunchBeepsOnce) {
    opener_.succeeds = false;
    shower_->show();
    shower_->hide(application);
    pass(0.2);
    EXPECT_EQ(windows_.beeps, 1);
}

TEST_F(LauncherWindowControllerTest, AFailedLaunchIsLogged) {
    opener_.succeeds = false;
    const std::string log = debugLog("amberquill.window", [&] { shower_->hide(application); });
    EXPECT_NE(log.find("could not open \"" + application.toStdString()), std::string::npos) << log;
}

TEST_F(LauncherWindowControllerTest, ALaunchDroppedByAShowIsLogged) {
    shower_->show();
    shower_->hide(application);
    const std::string log = debugLog("amberquill.window", [&] { shower_->show(); });
    EXPECT_NE(log.find("shown again before it was opened: \"" + application.toStdString()), std::string::npos)
        << log;
}

TEST_F(LauncherWindowControllerTest, ALateAnswerDoesNothingOnceTheControllerIsGone) {
    tokens_.hold = true;
    shower_->show();
    shower_->hide(application);
    shower_.reset();
    pass(0.3);
    tokens_.held(u"late"_s);
    EXPECT_EQ(windows_.withdrawn, 0);
    EXPECT_TRUE(opener_.opened.isEmpty());
}

TEST_F(LauncherWindowControllerTest, KeysTurnPagesAndEscapeHides) {
    shower_->show();
    pass(0.5);
    EXPECT_TRUE(key(Qt::Key_Right));
    EXPECT_EQ(model_->page(), 1);
    EXPECT_TRUE(key(Qt::Key_Left));
    EXPECT_TRUE(key(Qt::Key_Left)) << "consumed on the first page too";
    EXPECT_EQ(model_->page(), 0);
    EXPECT_TRUE(key(Qt::Key_Escape));
    EXPECT_FALSE(shower_->isShown());
}

TEST_F(LauncherWindowControllerTest, TheRightArrowStaysOnTheLastPage) {
    shower_->show();
    pass(0.5);
    const int last = model_->displayedPageCount() - 1;
    ASSERT_EQ(last, 2);
    for (int i = 0; i < 4; ++i) {
        EXPECT_TRUE(key(Qt::Key_Right));
    }
    EXPECT_EQ(model_->page(), last);
}

TEST_F(LauncherWindowControllerTest, TheArrowsMoveTheCaretInATextAndPagesOnceItIsGone) {
    shower_->show();
    pass(0.5);
    model_->turnToPage(1);
    model_->setSearchText(u"App"_s);
    key(Qt::Key_Left);
    EXPECT_EQ(model_->page(), 0) << "where the search began";
    EXPECT_TRUE(key(Qt::Key_Escape));
    EXPECT_EQ(model_->searchText(), QString());
    EXPECT_TRUE(shower_->isShown());
    EXPECT_EQ(model_->page(), 1);
    EXPECT_TRUE(key(Qt::Key_Left));
    EXPECT_EQ(model_->page(), 0);
}

TEST_F(LauncherWindowControllerTest, ReturnLaunchesTheFirstResult) {
    shower_->show();
    pass(0.5);
    model_->setSearchText(u"app 7"_s);
    EXPECT_TRUE(key(Qt::Key_Return));
    EXPECT_FALSE(shower_->isShown());
    pass(0.2);
    EXPECT_EQ(opener_.opened, QStringList{u"/Applications/7.app token"_s});
}

TEST_F(LauncherWindowControllerTest, ReturnWithoutASearchDoesNothing) {
    shower_->show();
    pass(0.5);
    EXPECT_TRUE(key(Qt::Key_Return));
    EXPECT_TRUE(key(Qt::Key_Enter, Qt::KeypadModifier));
    model_->setSearchText(u"nobody is called this"_s);
    EXPECT_TRUE(key(Qt::Key_Return));
    pass(0.2);
    EXPECT_TRUE(shower_->isShown());
    EXPECT_TRUE(opener_.opened.isEmpty());
}

TEST_F(LauncherWindowControllerTest, EscapeWithAFolderOpenClosesOnlyTheFolder) {
    shower_->show();
    pass(0.5);
    model_->newEmptyFolder();
    model_->openFolder(model_->items().back().asFolder()->id);
    ASSERT_TRUE(model_->folderIsOpen());
    EXPECT_TRUE(key(Qt::Key_Escape));
    EXPECT_FALSE(model_->folderIsOpen());
    EXPECT_TRUE(shower_->isShown());
    EXPECT_TRUE(key(Qt::Key_Escape));
    EXPECT_FALSE(shower_->isShown());
}

namespace {

// The launcher with the keyboard focus.
class LauncherWindowEditing : public LauncherWindowControllerTest {
protected:
    void SetUp() override {
        LauncherWindowControllerTest::SetUp();
        shower_->show();
        pass(0.5);
        shower_->window().show();
        shower_->window().requestActivate();
        QCoreApplication::processEvents();
        ASSERT_TRUE(shower_->window().isEditing()) << "the search field";
    }

    void openFolderTitle() {
        model_->newEmptyFolder();
        model_->openFolder(model_->items().back().asFolder()->id);
        pass(0.5);
        auto* title = shower_->window().rootObject()->findChild<QQuickItem*>(u"folderTitle"_s);
        if (title == nullptr) { // repeated items are not children of the Repeater
            title = itemBelow(shower_->window().rootObject(),
                              [](const QQuickItem& item) { return item.objectName() == u"folderTitle"_s; });
        }
        ASSERT_NE(title, nullptr);
        title->forceActiveFocus();
        ASSERT_EQ(shower_->window().activeFocusItem(), title);
    }

    [[nodiscard]] QString folderName() const { return model_->items().back().asFolder()->name; }

    void type(const QString& text) {
        for (const QChar character : text) {
            key(character.toUpper().unicode(), {}, character);
        }
    }
};

} // namespace

TEST_F(LauncherWindowEditing, TypingSearches) {
    type(u"app 7"_s);
    EXPECT_EQ(model_->searchText(), u"app 7"_s);
}

TEST_F(LauncherWindowEditing, TypingWithNoFieldFocusedSearchesFromTheFirstLetterOn) {
    shower_->window().endEditing();
    ASSERT_FALSE(shower_->window().isEditing());
    key(Qt::Key_Up);
    key(Qt::Key_Shift);
    EXPECT_FALSE(shower_->window().isEditing()) << "keys that write nothing";
    type(u"ab"_s);
    EXPECT_EQ(model_->searchText(), u"ab"_s);
}

TEST_F(LauncherWindowEditing, HidingTakesTheFocusFromTheSearchField) {
    const QQuickItem* field = shower_->window().activeFocusItem();
    shower_->hide(std::nullopt);
    EXPECT_FALSE(field->hasFocus());
    shower_->show();
    EXPECT_FALSE(shower_->window().isEditing()) << "not before the field is asked for again";
    queue_.runPosted();
    EXPECT_EQ(shower_->window().activeFocusItem(), field);
}

TEST_F(LauncherWindowEditing, HidingEndsTheEditingOfAFoldersTitle) {
    openFolderTitle();
    const QQuickItem* title = shower_->window().activeFocusItem();
    shower_->hide(std::nullopt);
    EXPECT_FALSE(title->hasFocus());
}

TEST_F(LauncherWindowControllerTest, NoCaretBlinks) {
    EXPECT_EQ(QGuiApplication::styleHints()->cursorFlashTime(), 0) << "each blink would wake the processor";
}

TEST_F(LauncherWindowEditing, TypingInAFoldersTitleRenamesIt) {
    openFolderTitle();
    shower_->window().edit(EditCommand::SelectAll);
    type(u"x"_s);
    EXPECT_EQ(folderName(), u"x"_s);
    EXPECT_EQ(model_->searchText(), QString());
}

TEST_F(LauncherWindowEditing, ReturnEndsTheEditingOfAFoldersTitleAndLeavesItOpen) {
    openFolderTitle();
    EXPECT_TRUE(key(Qt::Key_Return));
    EXPECT_FALSE(shower_->window().isEditing());
    EXPECT_TRUE(model_->folderIsOpen());
    EXPECT_TRUE(shower_->isShown());
}

TEST_F(LauncherWindowEditing, EscapeGoesToTheFieldWhileAnInputMethodComposes) {
    QInputMethodEvent composing(u"ni"_s, {});
    QCoreApplication::sendEvent(shower_->window().activeFocusItem(), &composing);
    ASSERT_TRUE(shower_->window().isComposing());
    key(Qt::Key_Escape);
    key(Qt::Key_Return);
    EXPECT_TRUE(shower_->isShown());
    QInputMethodEvent committing;
    committing.setCommitString(u"你"_s);
    QCoreApplication::sendEvent(shower_->window().activeFocusItem(), &committing);
    EXPECT_FALSE(shower_->window().isComposing());
    EXPECT_TRUE(model_->searchText().contains(u"你"_s));
    key(Qt::Key_Escape);
    EXPECT_EQ(model_->searchText(), QString());
}

TEST_F(LauncherWindowEditing, TheEditMenuWorksInWhicheverFieldHasTheFocus) {
    using enum EditCommand;
    LauncherWindow& window = shower_->window();
    type(u"one"_s);
    window.edit(SelectAll);
    window.edit(Cut);
    EXPECT_EQ(model_->searchText(), QString());
    window.edit(Paste);
    window.edit(Paste);
    EXPECT_EQ(model_->searchText(), u"oneone"_s);
    window.edit(Undo);
    EXPECT_EQ(model_->searchText(), u"one"_s);
    window.edit(SelectAll);
    window.edit(Copy);
    model_->setSearchText({});

    openFolderTitle();
    window.edit(SelectAll);
    window.edit(Paste);
    EXPECT_EQ(folderName(), u"one"_s);
    window.edit(Undo);
    EXPECT_NE(folderName(), u"one"_s);

    window.endEditing();
    window.edit(Paste);
    EXPECT_EQ(model_->searchText(), QString()) << "no field, nothing to edit";
}

TEST_F(LauncherWindowEditing, KeyEquivalentsOfTheMainMenuAreConsumed) {
    std::vector<int> offered;
    shower_->setKeyEquivalents([&offered](const QKeyEvent& event) {
        offered.push_back(event.key());
        return event.key() == Qt::Key_V;
    });
    QGuiApplication::clipboard()->setText(u"text"_s);
    EXPECT_TRUE(key(Qt::Key_V, Qt::ControlModifier));
    EXPECT_EQ(model_->searchText(), QString()) << "the field did not see it";
    key(Qt::Key_Escape, Qt::ControlModifier);
    EXPECT_TRUE(shower_->isShown());
    EXPECT_EQ(offered, (std::vector<int>{Qt::Key_V, Qt::Key_Escape}));
    shower_->hide(std::nullopt);
    key(Qt::Key_V, Qt::ControlModifier);
    EXPECT_EQ(offered.size(), 2U) << "only while the launcher is up";
}

TEST_F(LauncherWindowEditing, TheMenuKeyShowsTheMenuBelowItsButtonAndTheButtonAtThePointer) {
    std::vector<std::optional<QPoint>> places;
    shower_->setMenu([&places](QWindow&, const std::optional<QPoint>& place) { places.push_back(place); });
    EXPECT_TRUE(key(Qt::Key_Menu));
    shower_->showMenu();
    ASSERT_EQ(places.size(), 2U);
    const auto* button = shower_->window().rootObject()->findChild<QQuickItem*>(u"menuButton"_s);
    const QPoint below = button->mapToScene({0, button->height()}).toPoint();
    EXPECT_EQ(places[0], shower_->window().mapToGlobal(below));
    EXPECT_EQ(places[1], std::nullopt);
}

TEST_F(LauncherWindowEditing, KeysGoToAnOpenMenu) {
    QMenu menu;
    menu.addAction(u"first"_s);
    menu.addAction(u"second"_s);
    menu.popup({0, 0});
    key(Qt::Key_Down);
    key(Qt::Key_Down);
    ASSERT_NE(menu.activeAction(), nullptr);
    EXPECT_EQ(menu.activeAction()->text(), u"second"_s);
    key(Qt::Key_Escape);
    EXPECT_FALSE(menu.isVisible());
    EXPECT_TRUE(shower_->isShown());
}

TEST_F(LauncherWindowControllerTest, HidingClosesTheMenusThatAreOpen) {
    shower_->show();
    QMenu menu;
    QMenu* submenu = menu.addMenu(u"submenu"_s);
    submenu->addAction(u"entry"_s);
    menu.popup({0, 0});
    submenu->popup({10, 10});
    shower_->hide(std::nullopt);
    EXPECT_FALSE(submenu->isVisible());
    EXPECT_FALSE(menu.isVisible());
}

TEST_F(LauncherWindowControllerTest, KeysAreLeftAloneWhileHidden) {
    shower_->show();
    pass(0.5);
    shower_->hide(std::nullopt);
    key(Qt::Key_Right);
    EXPECT_EQ(model_->page(), 0);
}

TEST_F(LauncherWindowControllerTest, TheWheelTurnsPages) {
    shower_->show();
    pass(0.5);
    model_->setSize({1500, 892});
    QWheelEvent notch({400, 300}, {400, 300}, {}, {0, -120}, Qt::NoButton, Qt::NoModifier, Qt::NoScrollPhase,
                      false);
    QCoreApplication::sendEvent(&shower_->window(), &notch);
    EXPECT_EQ(model_->page(), 1);
}

TEST_F(LauncherWindowControllerTest, ASwipeWithoutPhasesTurnsItsPageAfterAPauseButNotOnceItIsHidden) {
    shower_->show();
    pass(0.5);
    model_->setSize({1500, 892});
    QWheelEvent swipe({400, 300}, {400, 300}, {-95, 0}, {-1140, 0}, Qt::NoButton, Qt::NoModifier,
                      Qt::NoScrollPhase, false);
    QCoreApplication::sendEvent(&shower_->window(), &swipe);
    EXPECT_EQ(model_->scrollOffset(), -95);
    EXPECT_EQ(model_->page(), 0);
    pass(0.2);
    EXPECT_EQ(model_->page(), 1);
    EXPECT_EQ(model_->scrollOffset(), 0);
    QCoreApplication::sendEvent(&shower_->window(), &swipe);
    EXPECT_EQ(model_->scrollOffset(), -95);
    shower_->hide(std::nullopt);
    pass(0.5);
    EXPECT_EQ(model_->page(), 1);
}

namespace {

// The launcher with a mouse.
class LauncherWindowDrag : public LauncherWindowControllerTest {
protected:
    void SetUp() override {
        LauncherWindowControllerTest::SetUp();
        shower_->show();
        pass(0.5);
        shower_->window().show();
        QCoreApplication::processEvents(); // the content gets its size
        ASSERT_EQ(model_->size(), QSizeF(shower_->window().size()));
    }

    void mouse(QEvent::Type type, const QPointF& place) {
        const bool released = type == QEvent::MouseButtonRelease;
        QMouseEvent event(type, place, place, place,
                          type == QEvent::MouseMove ? Qt::NoButton : Qt::LeftButton,
                          released ? Qt::NoButton : Qt::LeftButton, Qt::NoModifier);
        QCoreApplication::sendEvent(&shower_->window(), &event);
    }

    // Drags the first application over the third, until it is marked.
    void dragOverThird() {
        const QPointF from = model_->metrics().cellCenter(0);
        const QPointF to = model_->metrics().cellCenter(2);
        mouse(QEvent::MouseButtonPress, from);
        mouse(QEvent::MouseMove, (from + to) / 2);
        mouse(QEvent::MouseMove, to);
        ASSERT_TRUE(model_->drag().has_value());
        pass(0.25);
        ASSERT_NE(model_->mergeTargetID(), QString());
    }

    void expectNoDrag() {
        EXPECT_FALSE(model_->drag().has_value());
        EXPECT_EQ(model_->mergeTargetID(), QString());
        EXPECT_EQ(model_->pressedID(), QString());
        EXPECT_EQ(model_->pendingKey(), QString());
        EXPECT_EQ(model_->items().size(), 80U);
    }
};

} // namespace

TEST_F(LauncherWindowDrag, TheMouseDragsAnIconAndLetsItGo) {
    dragOverThird();
    mouse(QEvent::MouseButtonRelease, model_->metrics().cellCenter(2));
    EXPECT_EQ(model_->items().size(), 79U);
    EXPECT_FALSE(model_->drag().has_value());
}

TEST_F(LauncherWindowDrag, HidingEndsADragAndMovesAreIgnoredUntilTheNextPress) {
    dragOverThird();
    key(Qt::Key_Escape);
    expectNoDrag();
    mouse(QEvent::MouseMove, model_->metrics().cellCenter(4));
    expectNoDrag();
    mouse(QEvent::MouseButtonRelease, model_->metrics().cellCenter(4));
    expectNoDrag();
    pass(1);
    expectNoDrag();
    EXPECT_TRUE(opener_.opened.isEmpty());
}

TEST_F(LauncherWindowDrag, AWindowHiddenByTheWindowSystemEndsADrag) {
    dragOverThird();
    shower_->window().hide();
    expectNoDrag();
}

TEST_F(LauncherWindowDrag, ClicksAreIgnoredDuringTheFadeOutAndTakenAfterTheNextShow) {
    const auto click = [this](int slot) {
        mouse(QEvent::MouseButtonPress, model_->metrics().cellCenter(slot));
        mouse(QEvent::MouseButtonRelease, model_->metrics().cellCenter(slot));
    };
    click(0);
    click(0);
    click(3);
    pass(0.3);
    EXPECT_EQ(opener_.opened, QStringList{u"/Applications/1.app token"_s});
    shower_->show();
    click(3);
    pass(0.3);
    EXPECT_EQ(opener_.opened.size(), 2);
}

TEST_F(LauncherWindowDrag, TypingIsIgnoredDuringTheFadeOut) {
    shower_->window().requestActivate();
    QCoreApplication::processEvents();
    const auto* field = shower_->window().rootObject()->findChild<QQuickItem*>(u"searchField"_s);
    const QPointF place = field->mapToScene(field->boundingRect().center());
    shower_->hide(std::nullopt);
    mouse(QEvent::MouseButtonPress, place);
    mouse(QEvent::MouseButtonRelease, place);
    key(Qt::Key_A, {}, u"a"_s);
    EXPECT_EQ(model_->searchText(), QString());
}

TEST_F(LauncherWindowDrag, AssistiveTechnologiesPressNothingDuringTheFadeOut) {
    QQuickItem* tile = itemBelow(shower_->window().rootObject(), [](const QQuickItem& item) {
        return item.property("itemId").toString() == u"a:/Applications/1.app"_s;
    });
    ASSERT_NE(tile, nullptr);
    const auto press = [tile] {
        QAccessibleInterface* told = QAccessible::queryAccessibleInterface(tile);
        ASSERT_TRUE(told != nullptr && told->actionInterface() != nullptr);
        told->actionInterface()->doAction(QAccessibleActionInterface::pressAction());
    };
    press();
    press();
    pass(0.3);
    EXPECT_EQ(opener_.opened, QStringList{u"/Applications/1.app token"_s});
    shower_->show();
    press();
    pass(0.3);
    EXPECT_EQ(opener_.opened.size(), 2);
}

TEST_F(LauncherWindowDrag, AMouseTakenByAnotherItemEndsADrag) {
    dragOverThird();
    ASSERT_NE(shower_->window().mouseGrabberItem(), nullptr);
    shower_->window().mouseGrabberItem()->ungrabMouse();
    expectNoDrag();
}

TEST_F(LauncherWindowControllerTest, OnlyAVisibleWindowThatTakesKeysCountsAsAnotherWindow) {
    shower_->window().setVisible(true);
    EXPECT_FALSE(shower_->hasOtherWindow()) << "its own does not count";
    QWindow other;
    EXPECT_FALSE(shower_->hasOtherWindow()) << "not visible";
    other.setVisible(true);
    EXPECT_TRUE(shower_->hasOtherWindow());
    other.setVisible(false);
    other.setFlags(Qt::Popup);
    other.setVisible(true);
    EXPECT_FALSE(shower_->hasOtherWindow()) << "a menu";
    other.setVisible(false);
    other.setFlags(Qt::Dialog | Qt::WindowDoesNotAcceptFocus);
    other.setVisible(true);
    EXPECT_FALSE(shower_->hasOtherWindow()) << "takes no keys";
}

TEST_F(LauncherWindowControllerTest, AnAuxiliaryFlowCountsAsAnotherWindow) {
    LauncherWindowController::auxiliaryFlows().insert(u"about"_s);
    EXPECT_TRUE(shower_->hasOtherWindow());
    LauncherWindowController::auxiliaryFlows().remove(u"about"_s);
    EXPECT_FALSE(shower_->hasOtherWindow());
}

TEST_F(LauncherWindowControllerTest, TheScreenIsCapturedEachTimeBeforeTheWindowCoversIt) {
    shower_->show();
    EXPECT_EQ(screens_.areas, 1);
    shower_->window().show();
    pass(0.5);
    shower_->show();
    EXPECT_EQ(screens_.areas, 1) << "it is up";
    shower_->hide(std::nullopt);
    pass(0.1);
    shower_->show();
    EXPECT_EQ(screens_.areas, 1) << "it is still seen";
    pass(0.5);
    shower_->hide(std::nullopt);
    pass(0.2);
    shower_->window().hide();
    shower_->show();
    EXPECT_EQ(screens_.areas, 1) << "nobody has drawn himself again where it was";
    shower_->hide(std::nullopt);
    pass(0.6);
    shower_->show();
    EXPECT_EQ(screens_.areas, 2);
}

TEST_F(LauncherWindowControllerTest, TheBackdropIsNotReusedOnceTheWindowSystemBlurs) {
    const auto showAgainAtOnce = [this] {
        shower_->hide(std::nullopt);
        pass(0.2);
        shower_->show();
        pass(0.5);
    };
    shower_->show();
    pass(0.5);
    windows_.blurs = true;
    showAgainAtOnce();
    EXPECT_EQ(screens_.areas, 1) << "nothing is to be read";
    windows_.blurs = false;
    showAgainAtOnce();
    EXPECT_EQ(screens_.areas, 2) << "nothing was read before";
    showAgainAtOnce();
    EXPECT_EQ(screens_.areas, 2);
}

TEST_F(LauncherWindowControllerTest, NoPictureOfTheDesktopIsKeptWhileHidden) {
    auto backdrop = std::make_shared<const Backdrop>([] { return ScreenPicture(); },
                                                     BackgroundLook{{}, QSize(16, 9), 1, false});
    const std::weak_ptr<const Backdrop> kept = backdrop;
    shower_ = std::make_shared<LauncherWindowController>(
        LauncherWindowController::Services{.model = *model_,
                                           .queue = queue_,
                                           .windows = windows_,
                                           .tokens = tokens_,
                                           .opener = opener_,
                                           .scrollDevices = devices_,
                                           .screens = screens_,
                                           .firstBackdrop = std::move(backdrop)});
    shower_->show();
    shower_->window().show();
    pass(0.5);
    QCoreApplication::processEvents(); // the content gets its size
    shower_->window().grabWindow();
    EXPECT_FALSE(background().isNull());
    shower_->hide(std::nullopt);
    pass(0.2);
    shower_->window().hide();
    EXPECT_TRUE(background().isNull());
    EXPECT_FALSE(kept.expired()) << "it serves once more for a moment";
    shower_->show();
    shower_->window().show();
    pass(0.5);
    QCoreApplication::processEvents(); // the content gets its size
    shower_->window().grabWindow();
    EXPECT_FALSE(background().isNull());
    EXPECT_FALSE(kept.expired());
    shower_->hide(std::nullopt);
    shower_->window().hide();
    pass(0.6);
    EXPECT_TRUE(background().isNull());
    EXPECT_TRUE(kept.expired());
    EXPECT_EQ(screens_.areas, 0);
}
