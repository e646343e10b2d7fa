#include "model/PendingIntent.h"

#include "support/ManualQueue.h"

#include <gtest/gtest.h>
#include <memory>

using namespace amberquill;
using namespace Qt::StringLiterals;

namespace {

class PendingIntentTest : public testing::Test {
protected:
    MainQueue::Work note(int number) {
        return [this, number] { ran_.push_back(number); };
    }

    ManualQueue queue_;
    std::vector<int> ran_;
};

} // namespace

TEST_F(PendingIntentTest, RunsOnceAtItsTimeToTheMillisecond) {
    PendingIntent pending(queue_);
    pending.schedule(u"move:3"_s, 0.35, note(1));
    EXPECT_EQ(pending.key(), u"move:3"_s);
    queue_.advance(0.349);
    EXPECT_TRUE(ran_.empty());
    queue_.advance(0.001);
    EXPECT_EQ(ran_, std::vector{1});
    EXPECT_EQ(pending.key(), QString());
    queue_.advance(10);
    EXPECT_EQ(ran_, std::vector{1});
}

TEST_F(PendingIntentTest, TheSameKeyKeepsItsClockAndItsWork) {
    PendingIntent pending(queue_);
    pending.schedule(u"move:3"_s, 0.35, note(1));
    queue_.advance(0.2);
    pending.schedule(u"move:3"_s, 0.3, note(2));
    queue_.advance(0.149);
    EXPECT_TRUE(ran_.empty());
    queue_.advance(0.001);
    EXPECT_EQ(ran_, std::vector{1});
}

TEST_F(PendingIntentTest, AnotherKeyTakesTheOldOnesPlace) {
    PendingIntent pending(queue_);
    pending.schedule(u"move:3"_s, 0.35, note(1));
    queue_.advance(0.3);
    pending.schedule(u"move:4"_s, 0.35, note(2));
    EXPECT_EQ(queue_.timers(), 1U);
    queue_.advance(0.349);
    EXPECT_TRUE(ran_.empty());
    queue_.advance(0.001);
    EXPECT_EQ(ran_, std::vector{2});
}

TEST_F(PendingIntentTest, CancelledItDoesNothingAndTheKeyIsFreeAgain) {
    PendingIntent pending(queue_);
    pending.cancel();
    pending.schedule(u"page:1"_s, 0.65, note(1));
    queue_.advance(0.64);
    pending.cancel();
    EXPECT_EQ(pending.key(), QString());
    EXPECT_EQ(queue_.timers(), 0U);
    pending.schedule(u"page:1"_s, 0.65, note(2));
    queue_.advance(0.649);
    EXPECT_TRUE(ran_.empty());
    queue_.advance(0.001);
    EXPECT_EQ(ran_, std::vector{2});
}

TEST_F(PendingIntentTest, WorkMayScheduleTheSameKeyAnew) {
    PendingIntent pending(queue_);
    pending.schedule(u"page:1"_s, 0.65, [&] { pending.schedule(u"page:1"_s, 0.65, note(2)); });
    queue_.advance(0.65);
    EXPECT_EQ(pending.key(), u"page:1"_s);
    queue_.advance(0.65);
    EXPECT_EQ(ran_, std::vector{2});
}

TEST_F(PendingIntentTest, GoneItDoesNothing) {
    auto pending = std::make_unique<PendingIntent>(queue_);
    pending->schedule(u"page:1"_s, 0.65, note(1));
    pending.reset();
    queue_.advance(1);
    EXPECT_TRUE(ran_.empty());
}
