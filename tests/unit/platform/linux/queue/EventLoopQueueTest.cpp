#include "platform/linux/queue/EventLoopQueue.h"

#include "support/WaitUntil.h"

#include <QCoreApplication>
#include <QThread>
#include <atomic>
#include <chrono>
#include <gtest/gtest.h>
#include <memory>
#include <semaphore>

using namespace amberquill;
using namespace std::chrono_literals;

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

// Work that blocks until the test ends it.
class Stuck {
public:
    Stuck() = default;
    Stuck(const Stuck&) = delete;
    Stuck& operator=(const Stuck&) = delete;
    ~Stuck() { end(); }

    void end() { end_->release(); }

    [[nodiscard]] MainQueue::Work work() const {
        return [end = end_] {
            end->acquire();
            end->release(); // for the next work
        };
    }

private:
    std::shared_ptr<std::counting_semaphore<>> end_ = std::make_shared<std::counting_semaphore<>>(0);
};

} // namespace

TEST_F(EventLoopQueueTest, BackgroundWorkEndsOnTheMainThread) {
    ask();
    EXPECT_TRUE(waitUntil([this] { return finished_ == 1; }));
    EXPECT_EQ(worked_, 1);
}

TEST_F(EventLoopQueueTest, HeldWorkRunsOnceItIsReleased) {
    queue_.hold();
    ask();
    ask();
    bool later = false;
    queue_.post([&later] { later = true; });
    ASSERT_TRUE(waitUntil([&later] { return later; }));
    EXPECT_EQ(worked_, 0);
    queue_.release();
    EXPECT_TRUE(waitUntil([this] { return finished_ == 2; }));
    queue_.release();
    ask();
    EXPECT_TRUE(waitUntil([this] { return finished_ == 3; }));
    EXPECT_EQ(worked_, 3);
}

TEST_F(EventLoopQueueTest, LanesDoNotWaitForEachOther) {
    Stuck stuck;
    for (int i = 0; i < 64; ++i) {
        queue_.runInBackground(
            stuck.work(), [] {}, Lane::Icons);
    }
    for (const Lane lane : {Lane::General, Lane::Scan, Lane::Launch, Lane::Save}) {
        queue_.runInBackground([] {}, [this] { ++finished_; }, lane);
    }
    EXPECT_TRUE(waitUntil([this] { return finished_ == 4; }));
    stuck.end();
}

TEST_F(EventLoopQueueTest, StuckWorkDoesNotOccupyItsLane) {
    Stuck stuck;
    queue_.runInBackground(
        stuck.work(), [] {}, Lane::Scan);
    queue_.runInBackground(
        stuck.work(), [] {}, Lane::Scan);
    queue_.runInBackground([] {}, [this] { ++finished_; }, Lane::Scan);
    EXPECT_TRUE(waitUntil([this] { return finished_ == 1; }));
    stuck.end();
}

TEST_F(EventLoopQueueTest, OpeningIsNotHeld) {
    queue_.hold();
    queue_.runInBackground([] {}, [this] { ++finished_; }, Lane::Launch);
    EXPECT_TRUE(waitUntil([this] { return finished_ == 1; }));
}

TEST_F(EventLoopQueueTest, DestructionAbandonsStuckWorkAndDropsQueuedWork) {
    Stuck stuck;
    queue_.runInBackground(
        stuck.work(), [] {}, Lane::Scan);
    queue_.runInBackground([this] { ++worked_; }, [] {}, Lane::Scan);
    EXPECT_FALSE(queue_.finish(20ms));
    stuck.end();
    EXPECT_TRUE(queue_.finish(10s));
    EXPECT_EQ(worked_, 0);
}

TEST_F(EventLoopQueueTest, AStuckFlushIsAbandoned) {
    Stuck stuck;
    EXPECT_TRUE(queue_.runWithin(10s, {[this] { ++worked_; }}));
    EXPECT_EQ(worked_, 1);
    EXPECT_FALSE(queue_.runWithin(20ms, {stuck.work()}));
    EXPECT_FALSE(queue_.finish(20ms));
    stuck.end();
    EXPECT_TRUE(queue_.finish(10s));
}

TEST_F(EventLoopQueueTest, AStuckFlushDoesNotBlockOthers) {
    Stuck stuck;
    std::counting_semaphore<> ended(0);
    EXPECT_FALSE(queue_.runWithin(20ms, {stuck.work(), [&ended] { ended.release(); }}));
    EXPECT_TRUE(ended.try_acquire_for(10s));
    stuck.end();
    EXPECT_TRUE(queue_.finish(10s));
}

TEST(EventLoopQueue, WorkThatIsApartMayEndAfterTheQueue) {
    std::atomic<int> ended = 0;
    constexpr int rounds = 200;
    for (int round = 0; round < rounds; ++round) {
        EventLoopQueue queue;
        queue.runInBackground([&ended] { ++ended; }, [] {}, Lane::Apart);
        if (round % 2 == 0) {
            QCoreApplication::processEvents();
        }
    }
    EXPECT_TRUE(waitUntil([&ended] { return ended == rounds; }));
}

TEST(EventLoopQueue, ASlowQueuesSecondsAreLonger) {
    using Clock = std::chrono::steady_clock;
    EventLoopQueue slow(20);
    // The real clock is read before and after each reading of the queue's clock: a delay between two readings
    // on a busy machine makes the longer span longer, never the shorter one.
    const auto beforeBegin = Clock::now();
    const double begun = slow.now();
    const auto afterBegin = Clock::now();
    bool fired = false;
    const auto work = slow.postAfter(0.01, [&fired] { fired = true; });
    EXPECT_TRUE(waitUntil([&fired] { return fired; })) << "the work does not run";
    const auto beforeEnd = Clock::now();
    const double passed = slow.now() - begun;
    const auto afterEnd = Clock::now();
    const std::chrono::duration<double> shorter = beforeEnd - afterBegin;
    const std::chrono::duration<double> longer = afterEnd - beforeBegin;
    EXPECT_GE(shorter.count(), 0.2);
    constexpr double rounding = 1e-6;
    EXPECT_GE(passed, shorter.count() / 20 - rounding);
    EXPECT_LE(passed, longer.count() / 20 + rounding);
}
