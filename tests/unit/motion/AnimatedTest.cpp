#include "motion/Animated.h"

#include "motion/Animation.h"
#include "motion/Animations.h"
#include "support/ManualQueue.h"

#include <cmath>
#include <gtest/gtest.h>

using namespace amberquill;

namespace {

class AnimatedTest : public testing::Test {
protected:
    void SetUp() override { Timeline::shared().runOn(&queue_); }
    void TearDown() override {
        Timeline::shared().setReduced(false);
        Timeline::shared().runOn(nullptr);
    }

    void frames(int count) {
        for (int i = 0; i < count; ++i) {
            queue_.advance(1.0 / 60);
            Timeline::shared().advance();
        }
    }

    ManualQueue queue_;
};

} // namespace

TEST_F(AnimatedTest, TheFirstTargetIsWhereItStarts) {
    Animated animated;
    withAnimation(motion::page, [&] { animated.setTarget(300); });
    EXPECT_EQ(animated.value(), 300);
    EXPECT_TRUE(Timeline::shared().isIdle());
}

TEST_F(AnimatedTest, OutsideWithAnimationTheValueJumps) {
    Animated animated;
    animated.setTarget(0);
    animated.setTarget(300);
    EXPECT_EQ(animated.value(), 300);
    EXPECT_FALSE(animated.isMoving());
}

TEST_F(AnimatedTest, InsideItTravelsAndComesToRest) {
    Animated animated;
    animated.setTarget(0);
    int changes = 0;
    QObject::connect(&animated, &Animated::valueChanged, [&changes] { ++changes; });
    withAnimation(motion::page, [&] { animated.setTarget(300); });
    EXPECT_EQ(animated.target(), 300);
    EXPECT_EQ(animated.value(), 0);
    EXPECT_TRUE(animated.isMoving());
    frames(6);
    EXPECT_GT(animated.value(), 10);
    EXPECT_LT(animated.value(), 290);
    frames(60);
    EXPECT_EQ(animated.value(), 300);
    EXPECT_FALSE(animated.isMoving());
    EXPECT_TRUE(Timeline::shared().isIdle());
    EXPECT_GT(changes, 10);
}

TEST_F(AnimatedTest, ANewTargetOutsideWithAnimationEndsTheMotion) {
    Animated animated;
    animated.setTarget(0);
    withAnimation(motion::page, [&] { animated.setTarget(300); });
    frames(6);
    animated.setTarget(50);
    EXPECT_EQ(animated.value(), 50);
    frames(1);
    EXPECT_EQ(animated.value(), 50);
    EXPECT_TRUE(Timeline::shared().isIdle());
}

TEST_F(AnimatedTest, AJumpGoesToTheTargetItTravelsToAtOnce) {
    Animated animated;
    animated.setTarget(0);
    withAnimation(motion::page, [&] { animated.setTarget(300); });
    frames(6);
    animated.setTarget(300);
    EXPECT_TRUE(animated.isMoving()) << "the same target changes nothing";
    animated.jumpTo(300);
    EXPECT_EQ(animated.value(), 300);
    EXPECT_FALSE(animated.isMoving());
}

TEST_F(AnimatedTest, ADestroyedValueLeavesTheTimeline) {
    {
        Animated animated;
        animated.setTarget(0);
        withAnimation(motion::page, [&] { animated.setTarget(300); });
        EXPECT_FALSE(Timeline::shared().isIdle());
    }
    EXPECT_TRUE(Timeline::shared().isIdle());
    frames(1);
}

TEST_F(AnimatedTest, ReducedMotionMakesPositionsJumpAndFadesShort) {
    Timeline::shared().setReduced(true);
    Animated position;
    AnimatedPoint point;
    Animated opacity;
    opacity.setIsFade(true);
    position.setTarget(0);
    point.setTarget({0, 0});
    opacity.setTarget(0);
    withAnimation(motion::show, [&] {
        position.setTarget(100);
        point.setTarget({1, 2});
        opacity.setTarget(1);
    });
    EXPECT_EQ(position.value(), 100);
    EXPECT_EQ(point.value(), QPointF(1, 2));
    EXPECT_EQ(opacity.value(), 0);
    frames(8);
    EXPECT_EQ(opacity.value(), 1);
}

TEST_F(AnimatedTest, AFadeEndsBeforeTheRendererIgnoresItsChanges) {
    constexpr double takenForTheSame = 1e-5;
    for (const Animation& animation : {motion::show, motion::windowFadeIn}) {
        Animated opacity;
        opacity.setIsFade(true);
        opacity.setTarget(0);
        withAnimation(animation, [&] { opacity.setTarget(1); });
        while (opacity.isMoving()) {
            queue_.advance(1e-4);
            Timeline::shared().advance();
            const double missing = 1 - opacity.value();
            ASSERT_TRUE(missing == 0 || std::abs(missing) > takenForTheSame) << missing;
        }
        EXPECT_EQ(opacity.value(), 1);
    }
}

TEST_F(AnimatedTest, APointTravelsInBothDirectionsAndRestsAtItsTarget) {
    AnimatedPoint point;
    point.setTarget({0, 0});
    withAnimation(motion::move, [&] { point.setTarget({100, -40}); });
    frames(5);
    EXPECT_TRUE(point.isMoving());
    EXPECT_NEAR(point.value().y() / point.value().x(), -0.4, 1e-6);
    frames(60);
    EXPECT_EQ(point.value(), QPointF(100, -40));
    EXPECT_FALSE(point.isMoving());
}
