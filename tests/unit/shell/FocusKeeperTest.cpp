#include "shell/FocusKeeper.h"

#include "platform/WindowSystem.h"
#include "support/ManualQueue.h"

#include <QCoreApplication>
#include <QEvent>
#include <QGuiApplication>
#include <QWindow>
#include <gtest/gtest.h>

using namespace amberquill;

namespace {

class AbsentMindedWindowSystem final : public WindowSystem {
public:
    [[nodiscard]] QScreen* screenUnderPointer() const override { return nullptr; }
    void present(QWindow&, QScreen*) override {}
    void withdraw(QWindow&) override {}
    void beep() override {}
    [[nodiscard]] bool nobodyHasFocus() const override { return nobody; }

    bool nobody = false;
};

class FocusKeeperTest : public testing::Test {
protected:
    // On a screen, the other one with the focus.
    void showWindows() {
        launcher_.show();
        other_.show();
    }

    void close(Qt::WindowType type) {
        QWindow window;
        window.setFlags(type);
        QEvent hide(QEvent::Hide);
        QCoreApplication::sendEvent(&window, &hide);
    }

    [[nodiscard]] bool launcherHasFocus() const {
        QCoreApplication::processEvents();
        return QGuiApplication::focusWindow() == &launcher_;
    }

    AbsentMindedWindowSystem windows_;
    ManualQueue queue_;
    QWindow launcher_;
    QWindow other_;
    bool launcherIsUp_ = true;
    int ended_ = 0;
    FocusKeeper keeper_{
        windows_,
        queue_,
        {.heir = [this] { return launcherIsUp_ ? &launcher_ : nullptr; }, .ended = [this] { ++ended_; }}};
};

} // namespace

TEST_F(FocusKeeperTest, AFocusThatNobodyHasAfterADialogHasClosedIsAskedFor) {
    showWindows();
    windows_.nobody = true;
    EXPECT_FALSE(keeper_.expectsFocus());
    close(Qt::Dialog);
    EXPECT_TRUE(keeper_.expectsFocus());
    EXPECT_FALSE(launcherHasFocus());
    queue_.advance(0.1);
    EXPECT_TRUE(launcherHasFocus());
    windows_.nobody = false;
    queue_.advance(0.1);
    EXPECT_FALSE(keeper_.expectsFocus());
}

TEST_F(FocusKeeperTest, AFocusThatAnotherProgramHasIsLeftToIt) {
    close(Qt::Dialog);
    EXPECT_FALSE(keeper_.expectsFocus());
    queue_.advance(0.1);
    EXPECT_FALSE(launcherHasFocus());
    EXPECT_EQ(ended_, 1);
    windows_.nobody = true;
    queue_.advance(5);
    EXPECT_FALSE(launcherHasFocus()) << "nothing of ours has closed since";
}

TEST_F(FocusKeeperTest, AWindowManagerThatNeverGivesItIsAskedForTwoSeconds) {
    windows_.nobody = true;
    close(Qt::Dialog);
    queue_.advance(1.85);
    EXPECT_TRUE(keeper_.expectsFocus());
    queue_.advance(0.2);
    EXPECT_FALSE(keeper_.expectsFocus());
}

TEST_F(FocusKeeperTest, MenusAndToolTipsThatCloseTakeNoFocusAlong) {
    showWindows();
    windows_.nobody = true;
    close(Qt::Popup);
    close(Qt::ToolTip);
    EXPECT_FALSE(keeper_.expectsFocus());
    queue_.advance(0.1);
    EXPECT_FALSE(launcherHasFocus());
}

TEST_F(FocusKeeperTest, WhereNothingOfOursIsUpNothingIsAskedFor) {
    launcherIsUp_ = false;
    windows_.nobody = true;
    close(Qt::Dialog);
    EXPECT_FALSE(keeper_.expectsFocus());
    queue_.advance(0.1);
    EXPECT_FALSE(launcherHasFocus());
    EXPECT_EQ(ended_, 1);
}
