#include "model/PageTurns.h"

#include <gtest/gtest.h>

using namespace amberquill;

TEST(Wheel, ANotchDownIsTheNextPageAndANotchUpTheOneBefore) {
    PageTurns turns;
    EXPECT_EQ(turns.wheel({0, -1}, 3, 10), 4);
    EXPECT_EQ(turns.wheel({0, 1}, 3, 11), 2);
}

TEST(Wheel, TheLargerDeltaCounts) {
    PageTurns turns;
    EXPECT_EQ(turns.wheel({-2, 1}, 3, 10), 4);
    EXPECT_EQ(turns.wheel({2, -3}, 3, 11), 4);
    EXPECT_EQ(turns.wheel({1, -1}, 3, 12), 4) << "the vertical one when they are equal";
}

TEST(Wheel, ADeltaOfAHalfDoesNothing) {
    PageTurns turns;
    EXPECT_EQ(turns.wheel({0, -0.5}, 3, 10), 3);
    EXPECT_EQ(turns.wheel({0, -0.51}, 3, 10), 4) << "and does not start the rest";
}

TEST(Wheel, SpunQuicklyItTurnsAPageEveryThreeTenthsOfASecond) {
    PageTurns turns;
    int page = 0;
    int turned = 0;
    for (int tick = 0; tick <= 100; ++tick) { // a second of a notch every 10 ms
        const int next = turns.wheel({0, -1}, page, tick * 0.01);
        turned += next != page ? 1 : 0;
        page = next;
    }
    EXPECT_EQ(turned, 4) << "at 0, 0.31, 0.62 and 0.93";
}

TEST(Wheel, ExactlyThreeTenthsAreStillTooSoon) {
    PageTurns turns;
    EXPECT_EQ(turns.wheel({0, -1}, 0, 0), 1);
    EXPECT_EQ(turns.wheel({0, -1}, 1, 0.3), 1);
    EXPECT_EQ(turns.wheel({0, -1}, 1, 0.3001), 2);
}

TEST(Swipe, NinetyPointsStayAndNinetyOneTurn) {
    PageTurns turns;
    turns.begin();
    turns.move({-80, 0}, 1, 3);
    EXPECT_EQ(turns.end(1), 1);
    turns.begin();
    turns.move({-90, 0}, 1, 3);
    EXPECT_EQ(turns.end(1), 1);
    turns.begin();
    turns.move({-50, 0}, 1, 3);
    turns.move({-41, 0}, 1, 3);
    EXPECT_EQ(turns.end(1), 2);
    turns.begin();
    turns.move({90, 0}, 1, 3);
    EXPECT_EQ(turns.end(1), 1);
    turns.begin();
    turns.move({91, 0}, 1, 3);
    EXPECT_EQ(turns.end(1), 0);
}

TEST(Swipe, AVerticalOneTurnsBeyondSixty) {
    PageTurns turns;
    turns.begin();
    turns.move({3, -60}, 1, 3);
    EXPECT_EQ(turns.end(1), 1);
    turns.begin();
    turns.move({3, -61}, 1, 3);
    EXPECT_EQ(turns.end(1), 2);
    turns.begin();
    turns.move({-3, 60}, 1, 3);
    EXPECT_EQ(turns.end(1), 1);
    turns.begin();
    turns.move({-3, 61}, 1, 3);
    EXPECT_EQ(turns.end(1), 0);
}

TEST(Swipe, OneAsFarDownAsAcrossIsHorizontal) {
    PageTurns turns;
    turns.begin();
    EXPECT_EQ(turns.move({-70, -70}, 1, 3), -70);
    EXPECT_EQ(turns.end(1), 1) << "the vertical threshold is passed, the horizontal one is not";
    turns.begin();
    EXPECT_EQ(turns.move({-91, 91}, 1, 3), -91);
    EXPECT_EQ(turns.end(1), 2);
}

TEST(Swipe, ThePagesFollowAHorizontalOneOnly) {
    PageTurns turns;
    turns.begin();
    EXPECT_EQ(turns.move({-30, 10}, 1, 3), -30);
    EXPECT_EQ(turns.move({0, 25}, 1, 3), 0) << "now it is more vertical than horizontal";
    EXPECT_EQ(turns.move({-10, 0}, 1, 3), -40);
}

TEST(Swipe, ThePagesResistPastEitherEnd) {
    PageTurns turns;
    turns.begin();
    EXPECT_EQ(turns.move({100, 0}, 0, 3), 25);
    turns.begin();
    EXPECT_EQ(turns.move({-100, 0}, 2, 3), -25);
    turns.begin();
    EXPECT_EQ(turns.move({-100, 0}, 0, 3), -100);
    turns.begin();
    EXPECT_EQ(turns.move({-100, 0}, 0, 1), -25);
    EXPECT_EQ(turns.move({200, 0}, 0, 1), 25);
}

TEST(Swipe, EndingForgetsTheGesture) {
    PageTurns turns;
    turns.move({-200, 0}, 1, 3);
    EXPECT_EQ(turns.end(1), 2);
    EXPECT_EQ(turns.end(1), 1);
}
