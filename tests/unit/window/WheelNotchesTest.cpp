#include "window/WheelNotches.h"

#include <gtest/gtest.h>

using namespace amberquill;

namespace {

// What the notches add up to when a wheel turns by `part` of a notch `times` times, ten milliseconds apart.
QPointF turned(WheelNotches& notches, const QPointF& part, int times, double& now) {
    QPointF sum;
    for (int i = 0; i < times; ++i) {
        now += 0.01;
        sum += notches.add(part, now).value_or(QPointF());
    }
    return sum;
}

} // namespace

TEST(WheelNotches, AWholeNotchComesAtOnce) {
    WheelNotches notches;
    EXPECT_EQ(notches.add({0, -1}, 1), QPointF(0, -1));
    EXPECT_EQ(notches.add({2, 0}, 1), QPointF(2, 0));
}

TEST(WheelNotches, FractionsAddUpAndNoneIsLost) {
    WheelNotches notches;
    double now = 1;
    EXPECT_EQ(turned(notches, {0, -0.125}, 7, now), QPointF());
    EXPECT_EQ(turned(notches, {0, -0.125}, 1, now), QPointF(0, -1));
    EXPECT_EQ(turned(notches, {0, -0.125}, 792, now), QPointF(0, -99));
    EXPECT_EQ(turned(notches, {0, -0.25}, 3, now), QPointF());
    EXPECT_EQ(turned(notches, {0, -0.25}, 1, now), QPointF(0, -1));
}

TEST(WheelNotches, ALargeTurnKeepsItsFraction) {
    WheelNotches notches;
    EXPECT_EQ(notches.add({0, 1.5}, 1), QPointF(0, 1));
    EXPECT_EQ(notches.add({0, 0.25}, 1.1), std::nullopt);
    EXPECT_EQ(notches.add({0, 0.25}, 1.2), QPointF(0, 1));
}

TEST(WheelNotches, FractionsThatWereCutShortStillMakeTheirNotch) {
    WheelNotches notches;
    double now = 1;
    EXPECT_EQ(turned(notches, {0, 7 / 120.0}, 15, now), QPointF());
    EXPECT_EQ(turned(notches, {0, 7 / 120.0}, 1, now), QPointF(0, 1)) << "sixteen of 7.5 make 120";
}

TEST(WheelNotches, WhatIsLentIsTakenOffTheNextNotch) {
    WheelNotches notches;
    double now = 1;
    EXPECT_EQ(turned(notches, {0, 1 / 120.0}, 12'000, now), QPointF(0, 100));
}

TEST(WheelNotches, TheAxesAddUpSeparately) {
    WheelNotches notches;
    EXPECT_EQ(notches.add({0.5, -0.5}, 1), std::nullopt);
    EXPECT_EQ(notches.add({0.5, 0}, 1), QPointF(1, 0));
    EXPECT_EQ(notches.add({0, -0.5}, 1), QPointF(0, -1));
}

TEST(WheelNotches, AChangeOfDirectionDropsTheFraction) {
    WheelNotches notches;
    EXPECT_EQ(notches.add({0, -0.75}, 1), std::nullopt);
    EXPECT_EQ(notches.add({0, 0.5}, 1), std::nullopt);
    EXPECT_EQ(notches.add({0, 0.5}, 1), QPointF(0, 1)) << "not held up by the way back";
    EXPECT_EQ(notches.add({0, -0.75}, 1), std::nullopt);
}

TEST(WheelNotches, APauseDropsTheFraction) {
    WheelNotches notches;
    EXPECT_EQ(notches.add({0, -0.75}, 1), std::nullopt);
    EXPECT_EQ(notches.add({0, -0.75}, 1.501), std::nullopt);
    EXPECT_EQ(notches.add({0, -0.25}, 2.0), QPointF(0, -1)) << "half a second is none yet";
}

TEST(WheelNotches, ForgettingDropsTheFraction) {
    WheelNotches notches;
    notches.add({0, -0.75}, 1);
    notches.forget();
    EXPECT_EQ(notches.add({0, -0.75}, 1), std::nullopt);
}
