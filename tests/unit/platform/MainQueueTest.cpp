#include "platform/Context.h"

#include "support/ManualQueue.h"

#include <gtest/gtest.h>
#include <memory>
#include <optional>
#include <utility>

namespace amberquill {

namespace {

TEST(Context, BoundWorkRunsWithItsValues) {
    const Context context;
    int sum = 0;
    const auto add = context.bind([&sum](int a, int b) { sum = a + b; });
    auto copy = add;
    copy(1, 2);
    EXPECT_EQ(sum, 3);
}

TEST(Context, BoundWorkDoesNotRunAfterTheContextIsDestroyed) {
    auto context = std::make_optional<Context>();
    int runs = 0;
    auto work = context->bind([&runs] { ++runs; });
    context.reset();
    work();
    EXPECT_EQ(runs, 0);
}

TEST(Context, ResetCancelsOnlyWorkThatWasBoundBefore) {
    Context context;
    int before = 0;
    int after = 0;
    auto earlier = context.bind([&before] { ++before; });
    context.reset();
    auto later = context.bind([&after] { ++after; });
    earlier();
    later();
    EXPECT_EQ(before, 0);
    EXPECT_EQ(after, 1);
}

TEST(MainQueue, PostedDelayedAndBackgroundWorkIsCancelledWithItsContext) {
    ManualQueue queue;
    auto context = std::make_optional<Context>();
    int runs = 0;
    bool wasComputed = false;
    const auto count = [&runs] { ++runs; };
    const auto compute = [&] {
        queue.compute(
            *context,
            [&wasComputed] {
                wasComputed = true;
                return 1;
            },
            [&runs](int value) { runs += value; });
    };
    queue.then(*context, count);
    queue.thenAfter(*context, 1, count);
    compute();
    queue.advance(1);
    EXPECT_EQ(runs, 3);

    wasComputed = false;
    queue.then(*context, count);
    queue.thenAfter(*context, 1, count);
    compute();
    context.reset();
    queue.advance(1);
    EXPECT_EQ(runs, 3);
    EXPECT_TRUE(wasComputed);
}

TEST(MainQueue, DelayedWorkDoesNotRunAfterItsHandleIsDestroyed) {
    ManualQueue queue;
    bool ran = false;
    {
        const DelayedWork handle = queue.postAfter(1, [&ran] { ran = true; });
    }
    queue.advance(2);
    EXPECT_FALSE(ran);
}

TEST(MainQueue, AssigningNewWorkToAHandleCancelsTheEarlierWork) {
    ManualQueue queue;
    int first = 0;
    int second = 0;
    DelayedWork handle = queue.postAfter(1, [&first] { ++first; });
    handle = queue.postAfter(1, [&second] { ++second; });
    queue.advance(1);
    EXPECT_EQ(first, 0);
    EXPECT_EQ(second, 1);
}

TEST(MainQueue, AMovedHandleKeepsItsWork) {
    ManualQueue queue;
    int runs = 0;
    DelayedWork handle = queue.postAfter(1, [&runs] { ++runs; });
    const DelayedWork moved = std::move(handle);
    queue.advance(1);
    EXPECT_EQ(runs, 1);
}

} // namespace

} // namespace amberquill
