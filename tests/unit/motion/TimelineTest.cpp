#include "motion/Timeline.h"

#include "support/ManualQueue.h"

#include <gtest/gtest.h>
#include <memory>

using namespace amberquill;

namespace {

class Countdown final : public Moving {
public:
    explicit Countdown(int frames)
        : frames_(frames) {}
    ~Countdown() override = default;

    bool advance(double /*now*/) override {
        if (onFrame) {
            onFrame();
        }
        return --frames_ > 0;
    }

    std::function<void()> onFrame;

private:
    int frames_;
};

} // namespace

TEST(Timeline, SignalsTheFirstStartAndTheLastEnd) {
    Timeline& timeline = Timeline::shared();
    QStringList told;
    QObject context;
    QObject::connect(&timeline, &Timeline::started, &context,
                     [&told] { told.append(QStringLiteral("started")); });
    QObject::connect(&timeline, &Timeline::stopped, &context,
                     [&told] { told.append(QStringLiteral("stopped")); });
    Countdown one(1);
    Countdown two(2);
    timeline.add(one);
    timeline.add(one);
    timeline.add(two);
    timeline.advance();
    EXPECT_EQ(told, QStringList{QStringLiteral("started")});
    timeline.advance();
    EXPECT_EQ(told, (QStringList{QStringLiteral("started"), QStringLiteral("stopped")}));
    timeline.advance();
    EXPECT_TRUE(timeline.isIdle());
}

TEST(Timeline, AValueRemovedDuringAFrameIsNotCalled) {
    Timeline& timeline = Timeline::shared();
    auto victim = std::make_unique<Countdown>(5);
    int called = 0;
    victim->onFrame = [&called] { ++called; };
    Countdown killer(5);
    killer.onFrame = [&victim] { victim.reset(); };
    timeline.add(killer);
    timeline.add(*victim);
    timeline.advance();
    EXPECT_EQ(called, 0);
    timeline.remove(killer);
    EXPECT_TRUE(timeline.isIdle());
}
