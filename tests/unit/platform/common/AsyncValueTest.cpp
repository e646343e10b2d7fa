#include "platform/common/AsyncValue.h"

#include "support/ManualQueue.h"

#include <chrono>
#include <gtest/gtest.h>
#include <memory>
#include <optional>
#include <semaphore>

namespace amberquill {

namespace {

// Blocks a maker until the test opens it.
class Gate {
public:
    void open() const { gate_->release(); }

    [[nodiscard]] std::function<int()> heldUp(int value) const {
        return [gate = gate_, value] {
            gate->acquire();
            return value;
        };
    }

private:
    std::shared_ptr<std::binary_semaphore> gate_ = std::make_shared<std::binary_semaphore>(0);
};

// Waits for the value, at most 30 seconds, and runs posted work.
template<typename Condition>
bool runUntil(ManualQueue& queue, const AsyncValue<int>& value, Condition condition) {
    value.waitUntil(QDeadlineTimer(std::chrono::seconds(30)));
    queue.runPosted();
    return condition();
}

TEST(AsyncValue, IsTakenOnce) {
    AsyncValue<int> value;
    value.start([] { return 3; });
    EXPECT_EQ(value.take(), 3);
    EXPECT_EQ(value.take(), std::nullopt);
}

TEST(AsyncValue, AValueThatWasNotStartedIsNotWaitedFor) {
    const AsyncValue<int> value;
    EXPECT_EQ(value.take(), std::nullopt);
}

TEST(AsyncValue, AfterATimeoutTheValueIsNotTakenAndStillBeingMade) {
    const Gate gate;
    AsyncValue<int> value;
    value.start(gate.heldUp(3));
    EXPECT_EQ(value.takeBy(QDeadlineTimer(0)), std::nullopt);
    EXPECT_TRUE(value.isUnderWay());
    gate.open();
    EXPECT_EQ(value.take(), 3);
    EXPECT_FALSE(value.isUnderWay());
}

TEST(AsyncValue, CopiesReferToTheSameValue) {
    const AsyncValue<int> value;
    const auto giveToACopy = [copy = value] { copy.give(4); };
    giveToACopy();
    EXPECT_EQ(value.get(), 4);
}

TEST(AsyncValue, ALateValueIsDeliveredOnceOnTheMainThread) {
    const Gate gate;
    ManualQueue queue;
    const Context context;
    AsyncValue<int> value;
    value.start(gate.heldUp(3));
    int told = 0;
    value.whenThere(queue, context, [&told](int each) { told += each; });
    queue.runPosted();
    EXPECT_EQ(told, 0);
    gate.open();
    EXPECT_TRUE(runUntil(queue, value, [&told] { return told == 3; })) << told;
    EXPECT_EQ(value.take(), std::nullopt);
}

TEST(AsyncValue, AnAvailableValueIsDelivered) {
    ManualQueue queue;
    const Context context;
    const AsyncValue<int> value;
    value.give(5);
    int told = 0;
    value.whenThere(queue, context, [&told](int each) { told += each; });
    EXPECT_EQ(told, 0);
    queue.runPosted();
    EXPECT_EQ(told, 5);
}

TEST(AsyncValue, NothingIsDeliveredToADestroyedContext) {
    const Gate gate;
    ManualQueue queue;
    auto context = std::make_optional<Context>();
    AsyncValue<int> value;
    value.start(gate.heldUp(3));
    int told = 0;
    value.whenThere(queue, *context, [&told](int each) { told += each; });
    context.reset();
    gate.open();
    EXPECT_FALSE(runUntil(queue, value, [&told] { return told > 0; }));
}

} // namespace

} // namespace amberquill
