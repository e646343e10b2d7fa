#include "shell/FocusController.h"

#include "platform/ActivationTokens.h"
#include "platform/ApplicationOpener.h"
#include "platform/GlobalShortcut.h"
#include "platform/ScreenCapture.h"
#include "platform/ScrollDevices.h"
#include "platform/WindowSystem.h"
#include "support/ModelFixture.h"
#include "support/PlatformFakes.h"
#include "window/LauncherWindowController.h"

#include <QDialog>
#include <QEvent>
#include <QGuiApplication>

using namespace amberquill;
using namespace Qt::StringLiterals;

namespace {

// Shows windows off screen, where the latest one gets the focus.
class OffscreenWindowSystem final : public WindowSystem {
public:
    [[nodiscard]] QScreen* screenUnderPointer() const override { return nullptr; }
    void setActivationToken(const QString& token) override { calls += token; }
    void setUserTime(UserTime time) override { calls += QString::number(static_cast<std::uint32_t>(time)); }
    void present(QWindow& window, QScreen*) override {
        calls += u"present"_s;
        window.show();
    }
    void withdraw(QWindow& window, std::function<void()> then) override {
        window.hide();
        then();
    }
    void beep() override {}
    [[nodiscard]] bool nobodyHasFocus() const override { return nobody; }

    QStringList calls;
    bool nobody = false; // has the focus
};

class FocusControllerTest : public ModelFixture {
protected:
    void SetUp() override {
        ModelFixture::SetUp();
        launcher_ = std::make_shared<LauncherWindowController>(
            LauncherWindowController::Services{.model = makeModel(),
                                               .queue = queue_,
                                               .windows = windows_,
                                               .tokens = tokens_,
                                               .opener = opener_,
                                               .scrollDevices = devices_,
                                               .screens = screens_});
        focus_ = std::make_unique<FocusController>(windows_, queue_);
    }

    void TearDown() override {
        focus_.reset();
        launcher_.reset();
        ModelFixture::TearDown();
    }

    void launch() {
        focus_->launch(*launcher_);
        QCoreApplication::processEvents();
    }

    // Gives the focus to a window that is not the launcher's.
    void showOtherWindow() {
        other_.show();
        QCoreApplication::processEvents();
    }

    static void close(Qt::WindowType type) {
        QWindow window;
        window.setFlags(type);
        QEvent hide(QEvent::Hide);
        QCoreApplication::sendEvent(&window, &hide);
    }

    [[nodiscard]] static bool hasFocus(const QWindow& window) {
        QCoreApplication::processEvents();
        return QGuiApplication::focusWindow() == &window;
    }

    OffscreenWindowSystem windows_;
    NullActivationTokens tokens_;
    FailingOpener opener_;
    NullScrollDevices devices_;
    NullScreenCapture screens_;
    QWindow other_;
    std::shared_ptr<LauncherWindowController> launcher_;
    std::unique_ptr<FocusController> focus_;
};

} // namespace

TEST_F(FocusControllerTest, AFocusThatNobodyHasAfterADialogHasClosedIsRequestedForTheLauncher) {
    launch();
    showOtherWindow();
    windows_.nobody = true;
    close(Qt::Dialog);
    EXPECT_TRUE(hasFocus(other_));
    queue_.advance(FocusPolicy::checkInterval);
    EXPECT_TRUE(hasFocus(launcher_->window()));
}

TEST_F(FocusControllerTest, AFocusThatAnotherProgramHasIsNotRequested) {
    launch();
    showOtherWindow();
    close(Qt::Dialog);
    windows_.nobody = true;
    EXPECT_TRUE(hasFocus(other_));
    windows_.nobody = false;
    queue_.advance(FocusPolicy::checkInterval);
    EXPECT_TRUE(hasFocus(other_));
    windows_.nobody = true;
    queue_.advance(5);
    EXPECT_TRUE(hasFocus(other_)) << "no window has closed since";
}

TEST_F(FocusControllerTest, ClosedMenusAndToolTipsDoNotRequestTheFocus) {
    launch();
    showOtherWindow();
    windows_.nobody = true;
    close(Qt::Popup);
    close(Qt::ToolTip);
    queue_.advance(FocusPolicy::checkInterval);
    EXPECT_TRUE(hasFocus(other_));
}

TEST_F(FocusControllerTest, TheFocusIsRequestedForTwoSecondsAtMost) {
    launch();
    queue_.advance(1);
    const auto timers = queue_.timers();
    windows_.nobody = true;
    close(Qt::Dialog);
    queue_.advance(1.85);
    EXPECT_EQ(queue_.timers(), timers + 1);
    queue_.advance(0.2);
    EXPECT_EQ(queue_.timers(), timers);
}

TEST_F(FocusControllerTest, AModalDialogIsPreferredToTheLauncher) {
    launch();
    QDialog dialog;
    dialog.open();
    showOtherWindow();
    windows_.nobody = true;
    close(Qt::Dialog);
    queue_.advance(FocusPolicy::checkInterval);
    EXPECT_TRUE(hasFocus(*dialog.windowHandle()));
}

TEST_F(FocusControllerTest, WithoutTheLauncherAnyDialogGetsTheFocus) {
    focus_->hide();
    launch();
    QDialog dialog;
    dialog.show();
    showOtherWindow();
    windows_.nobody = true;
    close(Qt::Dialog);
    queue_.advance(FocusPolicy::checkInterval);
    EXPECT_TRUE(hasFocus(*dialog.windowHandle()));
}

TEST_F(FocusControllerTest, WithoutAWindowThatShouldHaveItNoFocusIsRequested) {
    focus_->hide();
    launch();
    showOtherWindow();
    const auto timers = queue_.timers();
    windows_.nobody = true;
    close(Qt::Dialog);
    queue_.advance(FocusPolicy::checkInterval);
    EXPECT_TRUE(hasFocus(other_));
    EXPECT_EQ(queue_.timers(), timers);
}

TEST_F(FocusControllerTest, ATokenAndATimeComeBeforeTheWindow) {
    launch();
    windows_.calls.clear();
    focus_->show(u"first"_s);
    focus_->hide();
    focus_->toggle({u"second"_s, UserTime{7}});
    EXPECT_EQ(windows_.calls, (QStringList{u"first"_s, u"present"_s, u"7"_s, u"second"_s, u"present"_s}));
}

TEST_F(FocusControllerTest, AToggleThatHidesKeepsNoTokenAndNoTime) {
    launch();
    Q_EMIT qGuiApp->applicationStateChanged(Qt::ApplicationActive);
    windows_.calls.clear();
    focus_->toggle({u"token"_s, UserTime{7}});
    EXPECT_FALSE(launcher_->isShown());
    EXPECT_EQ(windows_.calls, QStringList());
}
