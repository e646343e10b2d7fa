#include "platform/EventLoopQueue.h"

#include <QCoreApplication>
#include <QTest>
#include <QThread>
#include <atomic>
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
