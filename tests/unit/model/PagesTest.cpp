#include "model/Pages.h"

#include "support/NumberedItems.h"

#include <gtest/gtest.h>

using namespace amberquill;

namespace {

const GridMetrics page{{1500, 892}, 7, 5}; // cells of 180 × 140 from (120, 120)

} // namespace

TEST(PageCount, IsRoundedUpAndAtLeastOne) {
    EXPECT_EQ(pageCount(0, 35), 1);
    EXPECT_EQ(pageCount(1, 35), 1);
    EXPECT_EQ(pageCount(35, 35), 1);
    EXPECT_EQ(pageCount(36, 35), 2);
    EXPECT_EQ(pageCount(10'000, 35), 286);
}

TEST(VisibleEntries, ThereAreNoneBeforeTheContentHasAWidth) {
    EXPECT_TRUE(visibleEntries(numberedApps(3), {{0, 892}, 7, 5}, 0, 0).empty());
}

TEST(VisibleEntries, AreTheItemsOfThePageAndItsNeighboursInOrder) {
    const auto entries = visibleEntries(numberedApps(35 * 5), page, 2, 0);
    ASSERT_EQ(entries.size(), 105U);
    for (std::size_t i = 0; i < entries.size(); ++i) {
        EXPECT_EQ(entries[i].index, 35 + static_cast<int>(i));
        EXPECT_EQ(*entries[i].item.asApp(), QString::number(entries[i].index));
    }
}

TEST(VisibleEntries, TheFirstPageHasNoneBeforeItAndTheLastNoneAfterIt) {
    EXPECT_EQ(visibleEntries(numberedApps(35 * 5), page, 0, 0).size(), 70U);
    EXPECT_EQ(visibleEntries(numberedApps(35 * 4 + 3), page, 4, 0).size(), 38U);
    EXPECT_EQ(visibleEntries(numberedApps(0), page, 0, 0).size(), 0U);
}

TEST(VisibleEntries, EachPageIsAContentWidthFromTheNext) {
    const auto entries = visibleEntries(numberedApps(35 * 3), page, 1, 0);
    EXPECT_EQ(entries[0].center, QPointF(210 - 1500, 190));
    EXPECT_EQ(entries[35].center, QPointF(210, 190));
    EXPECT_EQ(entries[35 + 8].center, QPointF(390, 330));
    EXPECT_EQ(entries[70].center, QPointF(210 + 1500, 190));
}

TEST(VisibleEntries, TheScrollOffsetShiftsThemAll) {
    const auto rest = visibleEntries(numberedApps(80), page, 1, 0);
    const auto moved = visibleEntries(numberedApps(80), page, 1, -37.5);
    ASSERT_EQ(rest.size(), moved.size());
    for (std::size_t i = 0; i < rest.size(); ++i) {
        EXPECT_EQ(moved[i].center, rest[i].center + QPointF(-37.5, 0));
    }
}

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

TEST(Wheel, AFastWheelTurnsAPageEveryThreeTenthsOfASecond) {
    PageTurns turns;
    int page = 0;
    int turned = 0;
    for (int tick = 0; tick <= 100; ++tick) { // a notch every 10 ms for a second
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
