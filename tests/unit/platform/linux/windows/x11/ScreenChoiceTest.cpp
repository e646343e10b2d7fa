#include "platform/linux/windows/x11/ScreenChoice.h"

#include <gtest/gtest.h>
#include <limits>

namespace amberquill::desktop {
namespace {

const std::vector<QRect> twoScreens{{0, 0, 1366, 768}, {1366, 0, 1920, 1080}};

TEST(ScreenChoice, ThePointersScreenIsTheOneThatHoldsIt) {
    EXPECT_EQ(screenFor({100, 100}, twoScreens), 0U);
    EXPECT_EQ(screenFor({2000, 1000}, twoScreens), 1U);
}

TEST(ScreenChoice, EdgesBelongToTheScreenThatShowsThem) {
    EXPECT_EQ(screenFor({0, 0}, twoScreens), 0U);
    EXPECT_EQ(screenFor({1365, 767}, twoScreens), 0U);
    EXPECT_EQ(screenFor({1366, 0}, twoScreens), 1U);
    EXPECT_EQ(screenFor({3285, 1079}, twoScreens), 1U);
}

TEST(ScreenChoice, OfMirroredScreensTheFirstCounts) {
    EXPECT_EQ(screenFor({5, 5}, {{0, 0, 800, 600}, {0, 0, 800, 600}}), 0U);
}

TEST(ScreenChoice, InAGapTheNearestScreenCounts) {
    EXPECT_EQ(screenFor({100, 900}, twoScreens), 0U);
    EXPECT_EQ(screenFor({1300, 1079}, twoScreens), 1U);
}

TEST(ScreenChoice, ScreensMayLieLeftOfAndAboveTheOrigin) {
    EXPECT_EQ(screenFor({-10, -10}, {{0, 0, 800, 600}, {-800, -600, 800, 600}}), 1U);
}

TEST(ScreenChoice, WithoutScreensThereIsNone) {
    EXPECT_EQ(screenFor({0, 0}, {}), std::nullopt);
}

TEST(ScreenChoice, FarCoordinatesDoNotOverflow) {
    constexpr int far = std::numeric_limits<int>::max();
    EXPECT_EQ(screenFor({-far, -far}, {{far - 10, far - 10, 10, 10}, {0, 0, 10, 10}}), 1U);
}

} // namespace
} // namespace amberquill::desktop
