#include "shell/PressMerger.h"

#include <gtest/gtest.h>

using namespace amberquill;

TEST(PressMerger, OnePressByTwoRoutesIsOne) {
    PressMerger presses;
    EXPECT_TRUE(presses.isNewPress(PressRoute::hotKey, 1000));
    EXPECT_FALSE(presses.isNewPress(PressRoute::bus, 1000.05));
}

TEST(PressMerger, TwoPressesByOneRouteAreTwoHoweverFast) {
    PressMerger presses;
    EXPECT_TRUE(presses.isNewPress(PressRoute::hotKey, 1000));
    EXPECT_TRUE(presses.isNewPress(PressRoute::hotKey, 1000.01));
}

TEST(PressMerger, TwoFastPressesByBothRoutesAreTwoWhicheverIsFaster) {
    PressMerger presses;
    EXPECT_TRUE(presses.isNewPress(PressRoute::bus, 1000));
    EXPECT_FALSE(presses.isNewPress(PressRoute::hotKey, 1000.02));
    EXPECT_TRUE(presses.isNewPress(PressRoute::hotKey, 1000.15));
    EXPECT_FALSE(presses.isNewPress(PressRoute::bus, 1000.17));
}

TEST(PressMerger, WhatComesLateIsAPressOfItsOwn) {
    PressMerger presses;
    EXPECT_TRUE(presses.isNewPress(PressRoute::hotKey, 1000));
    EXPECT_TRUE(presses.isNewPress(PressRoute::bus, 1000.01 + PressMerger::longestEcho));
}
