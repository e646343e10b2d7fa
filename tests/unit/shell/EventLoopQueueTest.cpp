#include "platform/EventLoopQueue.h"

#include <QCoreApplication>
#include <QTest>
#include <QThread>
#include <atomic>
#include <chrono>
#include <gtest/gtest.h>

using namespace amberquill;

namespace {

class EventLoopQueueTest : public testing::Test {
protected:
    EventLoopQueue queue_;
    std::atomic<int> worked_ = 0;
    int finished_ = 0;

    void ask() {
        queue_.runInBackground([this] { ++worked_; },
                               [this] {
                                   EXPECT_TRUE(QThread::currentThread() == qApp->thread());
                                   ++finished_;
                               });
    }
};

} // namespace

TEST_F(EventLoopQueueTest, BackgroundWorkEndsOnTheMainThread) {
    ask();
    EXPECT_TRUE(QTest::qWaitFor([this] { return finished_ == 1; }));
    EXPECT_EQ(worked_, 1);
}

TEST_F(EventLoopQueueTest, WhatIsHeldRunsOnceItIsReleased) {
    queue_.hold();
    ask();
    ask();
    bool later = false;
    queue_.post([&later] { later = true; });
    ASSERT_TRUE(QTest::qWaitFor([&later] { return later; }));
    EXPECT_EQ(worked_, 0);
    queue_.release();
    EXPECT_TRUE(QTest::qWaitFor([this] { return finished_ == 2; }));
    queue_.release();
    ask();
    EXPECT_TRUE(QTest::qWaitFor([this] { return finished_ == 3; }));
    EXPECT_EQ(worked_, 3);
}

TEST(EventLoopQueue, SlowedDownItsSecondsTakeLonger) {
    EventLoopQueue slow(20);
    const double begun = slow.now();
    const auto begunOutside = std::chrono::steady_clock::now();
    bool fired = false;
    const auto work = slow.postAfter(0.01, [&fired] { fired = true; });
    EXPECT_TRUE(QTest::qWaitFor([&fired] { return fired; }));
    const std::chrono::duration<double> outside = std::chrono::steady_clock::now() - begunOutside;
    EXPECT_GE(outside.count(), 0.2);
    EXPECT_NEAR(slow.now() - begun, outside.count() / 20, 0.005);
}
