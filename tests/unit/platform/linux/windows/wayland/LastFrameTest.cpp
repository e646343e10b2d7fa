#include "platform/linux/windows/wayland/LastFrame.h"
#include "support/ManualQueue.h"
#include "support/WaitUntil.h"

#include <QCoreApplication>
#include <QWindow>
#include <gtest/gtest.h>

using namespace amberquill;
using namespace amberquill::desktop;

namespace {

class DrawnWindow final : public QWindow {
public:
    // Whether the window is asked to draw when the compositor has answered its latest frame.
    [[nodiscard]] bool drawsNext() {
        drawn_ = false;
        QEvent answered(QEvent::UpdateRequest);
        QCoreApplication::sendEvent(this, &answered);
        return drawn_;
    }

    [[nodiscard]] bool hasDrawn() const { return drawn_; }

protected:
    bool event(QEvent* event) override {
        drawn_ = drawn_ || event->type() == QEvent::UpdateRequest;
        return QWindow::event(event);
    }

private:
    bool drawn_ = false;
};

class LastFrameTest : public testing::Test {
protected:
    void SetUp() override { window_.show(); }

    void await(LastFrame& frame) {
        frame.await(window_, [this] { ++calls_; });
    }

    ManualQueue queue_;
    DrawnWindow window_;
    LastFrame frame_{queue_, QVersionNumber(6, 7, 3)};
    int calls_ = 0;
};

} // namespace

TEST_F(LastFrameTest, ItWaitsForTheAnswerAndLetsNoOtherFrameBeDrawn) {
    await(frame_);
    queue_.advance(0.05);
    EXPECT_EQ(calls_, 0);
    EXPECT_FALSE(window_.drawsNext());
    EXPECT_EQ(calls_, 0) << "Qt delivers the answer from inside the window";
    EXPECT_FALSE(window_.drawsNext());
    queue_.runPosted();
    EXPECT_EQ(calls_, 1);
    EXPECT_TRUE(window_.drawsNext());
    queue_.advance(1);
    EXPECT_EQ(calls_, 1);
}

TEST_F(LastFrameTest, ItDoesNotWaitLongForAWindowThatCannotBeSeen) {
    await(frame_);
    queue_.advance(0.09);
    EXPECT_EQ(calls_, 0);
    queue_.advance(0.02);
    EXPECT_EQ(calls_, 1);
    EXPECT_TRUE(window_.drawsNext());
}

TEST_F(LastFrameTest, NoOtherFrameIsDrawnBeforeTheWindowIsHidden) {
    bool draws = true;
    frame_.await(window_, [&] { draws = window_.drawsNext(); });
    queue_.advance(0.2);
    EXPECT_FALSE(draws);
}

TEST_F(LastFrameTest, ACancelledWaitEndsWithoutACallAndTheWindowDrawsWhatItHadToDraw) {
    await(frame_);
    const std::size_t unanswered = queue_.waiting();
    ASSERT_TRUE(waitUntil([&] { return queue_.waiting() > unanswered; }));
    EXPECT_FALSE(window_.hasDrawn());
    frame_.cancel();
    EXPECT_TRUE(waitUntil([this] { return window_.hasDrawn(); }));
    queue_.advance(1);
    EXPECT_EQ(calls_, 0);
}

TEST_F(LastFrameTest, ALaterWaitReplacesAnEarlierOne) {
    frame_.await(window_, [] { FAIL(); });
    queue_.advance(0.06);
    await(frame_);
    queue_.advance(0.06);
    EXPECT_EQ(calls_, 0);
    queue_.advance(0.06);
    EXPECT_EQ(calls_, 1);
}

TEST_F(LastFrameTest, AHiddenWindowHasNoFrameToWaitFor) {
    window_.hide();
    await(frame_);
    EXPECT_EQ(calls_, 1);
}

TEST_F(LastFrameTest, AQtThatLocksItsCallbacksNeedsNoWait) {
    LastFrame frame(queue_, QVersionNumber(6, 8, 0));
    await(frame);
    EXPECT_EQ(calls_, 1);
}
