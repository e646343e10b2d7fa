#include "platform/linux/input/x11/KeyGrabs.h"

#include <gtest/gtest.h>

using namespace amberquill::desktop;

TEST(ChordPresses, EachPressCountsOnce) {
    ChordPresses presses;
    EXPECT_TRUE(presses.press(65, 1000));
    EXPECT_TRUE(presses.release(65, 1080));
    EXPECT_TRUE(presses.press(65, 1100));
    EXPECT_TRUE(presses.release(65, 1150));
}

TEST(ChordPresses, RepetitionsWithoutReleasesAreNotPresses) {
    ChordPresses presses;
    EXPECT_TRUE(presses.press(65, 1000));
    for (std::uint32_t time = 1660; time < 10'000; time += 40) {
        EXPECT_FALSE(presses.press(65, time));
    }
    EXPECT_TRUE(presses.release(65, 10'000));
    EXPECT_TRUE(presses.press(65, 10'100));
}

TEST(ChordPresses, AReleaseAndAPressAtTheSameTimeAreNotAPress) {
    ChordPresses presses;
    EXPECT_TRUE(presses.press(65, 1000));
    for (std::uint32_t time = 1660; time < 5000; time += 40) {
        EXPECT_TRUE(presses.release(65, time));
        EXPECT_FALSE(presses.press(65, time));
    }
}

TEST(ChordPresses, AMissedReleaseBlocksPressesOnlyBriefly) {
    ChordPresses presses;
    EXPECT_TRUE(presses.press(65, 1000));
    EXPECT_TRUE(presses.press(65, 1000 + ChordPresses::longestSilence));
}

TEST(ChordPresses, TheServersClockMayWrapAround) {
    ChordPresses presses;
    EXPECT_TRUE(presses.press(65, 0xffffff00));
    EXPECT_FALSE(presses.press(65, 0x00000020)) << "290 milliseconds later";
}

TEST(ChordPresses, AnotherKeyOfTheSameSymbolIsAnotherPress) {
    ChordPresses presses;
    EXPECT_TRUE(presses.press(65, 1000));
    EXPECT_TRUE(presses.press(66, 1010));
}

TEST(ChordPresses, OnlyAKeyThatIsDownIsReleased) {
    ChordPresses presses;
    EXPECT_FALSE(presses.release(65, 1000));
    EXPECT_TRUE(presses.press(65, 1100));
    EXPECT_FALSE(presses.release(66, 1200));
    EXPECT_TRUE(presses.release(65, 1300));
    EXPECT_FALSE(presses.release(65, 1400));
}
