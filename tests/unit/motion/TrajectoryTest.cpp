#include "motion/Trajectory.h"

#include <cmath>
#include <gtest/gtest.h>
#include <numbers>

using namespace amberquill;

namespace {

constexpr double start = 50;
constexpr double precision = 0.5;

// Advances a new motion at once, so that its clock runs from `start`.
Trajectory setOff(double from, double to, const Animation& animation) {
    Trajectory trajectory(from);
    trajectory.travel(to, animation, start);
    trajectory.advance(start + 1e-9, precision);
    return trajectory;
}

// The same oscillator, integrated in small steps.
double integrated(double offset, double velocity, const Animation& spring, double time) {
    const double omega = 2 * std::numbers::pi / spring.seconds;
    constexpr int steps = 200'000;
    const double dt = time / steps;
    double x = offset;
    double v = velocity;
    for (int i = 0; i < steps; ++i) {
        const auto acceleration = [&](double at, double speed) {
            return -omega * omega * at - 2 * spring.dampingFraction * omega * speed;
        };
        const double midX = x + v * dt / 2;
        const double midV = v + acceleration(x, v) * dt / 2;
        x += midV * dt;
        v += acceleration(midX, midV) * dt;
    }
    return x;
}

} // namespace

TEST(Trajectory, ASpringFollowsItsEquationWhateverTheDamping) {
    for (const double damping : {0.3, 0.7, 0.86, 1.0, 1.6}) {
        const Animation animation = spring(0.42, damping);
        Trajectory trajectory = setOff(0, 100, animation);
        for (const double time : {0.05, 0.1, 0.2, 0.3}) {
            trajectory.advance(start + time, 1e-9);
            EXPECT_NEAR(trajectory.value(), 100 + integrated(-100, 0, animation, time), 0.01)
                << damping << " " << time;
        }
    }
}

TEST(Trajectory, ASpringsValueDoesNotDependOnTheNumberOfFrames) {
    Trajectory often = setOff(0, 100, spring(0.42, 0.86));
    Trajectory seldom = often;
    for (int i = 1; i <= 144; ++i) {
        often.advance(start + i * 0.2 / 144, precision);
    }
    seldom.advance(start + 0.2, precision);
    EXPECT_NEAR(often.value(), seldom.value(), 1e-9);
    EXPECT_NEAR(often.velocity(), seldom.velocity(), 1e-6);
}

TEST(Trajectory, AnInterruptedSpringKeepsItsSpeed) {
    Trajectory trajectory = setOff(0, 100, spring(0.42, 0.86));
    trajectory.advance(start + 0.1, precision);
    const double speed = trajectory.velocity();
    ASSERT_GT(speed, 100);
    trajectory.travel(0, spring(0.42, 0.86), start + 0.1);
    EXPECT_EQ(trajectory.velocity(), speed);
    const double value = trajectory.value();
    trajectory.advance(start + 0.101, precision);
    EXPECT_NEAR((trajectory.value() - value) / 0.001, speed, std::abs(speed) * 0.1);
    EXPECT_GT(trajectory.value(), value);
}

TEST(Trajectory, ASpringEndsExactlyAtItsTargetOnceItStaysWithinThePrecision) {
    Trajectory trajectory = setOff(0, 100, spring(0.42, 0.7));
    double time = 0;
    double last = 0;
    while (trajectory.isMoving() && time < 5) {
        last = trajectory.value();
        time += 1.0 / 240;
        trajectory.advance(start + time, precision);
    }
    EXPECT_LT(time, 1);
    EXPECT_EQ(trajectory.value(), 100);
    EXPECT_EQ(trajectory.velocity(), 0);
    EXPECT_NEAR(last, 100, 1);
}

TEST(Trajectory, ASpringDoesNotEndWhileItIsFartherThanThePrecision) {
    Trajectory trajectory = setOff(0, 100, spring(0.42, 1));
    double last = 0;
    for (double time = 0; trajectory.isMoving() && time < 5; time += 0.0001) {
        last = trajectory.value();
        trajectory.advance(start + time, precision);
    }
    EXPECT_NEAR(last, 100, precision);
}

TEST(Trajectory, ASpringThatPassesItsTargetDoesNotEndThere) {
    Trajectory trajectory = setOff(0, 100, spring(0.42, 0.3));
    double time = 0;
    while (trajectory.value() < 99.9 && time < 5) {
        time += 0.0005;
        trajectory.advance(start + time, precision);
    }
    ASSERT_GE(trajectory.value(), 99.9) << "it does not reach its target";
    EXPECT_TRUE(trajectory.isMoving());
    trajectory.advance(start + time + 0.05, precision);
    EXPECT_GT(trajectory.value(), 105);
}

TEST(Trajectory, AnEaseTakesExactlyItsTime) {
    for (const Animation& animation : {easeIn(0.15), easeOut(0.15), easeBoth(0.15)}) {
        Trajectory trajectory = setOff(1, 0, animation);
        trajectory.advance(start + 0.1499, precision);
        EXPECT_TRUE(trajectory.isMoving());
        EXPECT_GT(trajectory.value(), 0);
        trajectory.advance(start + 0.15001, precision);
        EXPECT_FALSE(trajectory.isMoving());
        EXPECT_EQ(trajectory.value(), 0);
    }
}

TEST(Trajectory, AnEaseInStartsSlowlyAndAnEaseOutEndsSlowly) {
    Trajectory in = setOff(0, 1, easeIn(0.2));
    in.advance(start + 0.05, precision);
    EXPECT_LT(in.value(), 0.2);
    Trajectory out = setOff(0, 1, easeOut(0.2));
    out.advance(start + 0.05, precision);
    EXPECT_GT(out.value(), 0.3);
}

TEST(Trajectory, AMotionAdvancedLateBeginsWithAShortStep) {
    Trajectory trajectory(0);
    trajectory.travel(1, easeOut(0.2), start);
    trajectory.advance(start + 0.5, precision);
    EXPECT_TRUE(trajectory.isMoving());
    EXPECT_LT(trajectory.value(), 0.2);
    trajectory.advance(start + 0.5 + 0.19, precision);
    EXPECT_FALSE(trajectory.isMoving());
}

TEST(Trajectory, AJumpEndsAMotion) {
    Trajectory trajectory = setOff(0, 100, spring(0.42, 0.86));
    trajectory.advance(start + 0.1, precision);
    trajectory.jump(7);
    EXPECT_EQ(trajectory.value(), 7);
    EXPECT_EQ(trajectory.velocity(), 0);
    EXPECT_FALSE(trajectory.isMoving());
}

TEST(Trajectory, TravellingToTheCurrentValueIsNoMotion) {
    Trajectory trajectory(5);
    trajectory.travel(5, spring(0.42, 0.86), start);
    EXPECT_FALSE(trajectory.isMoving());
}
