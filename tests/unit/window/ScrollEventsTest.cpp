#include "window/ScrollEvents.h"

#include <QWheelEvent>
#include <gtest/gtest.h>

using namespace amberquill;

namespace {

ScrollEvent wheel(const QPoint& pixels, const QPoint& angle, Qt::ScrollPhase phase) {
    const QWheelEvent event({10, 10}, {10, 10}, pixels, angle, Qt::NoButton, Qt::NoModifier, phase, false);
    return scrollEvent(event);
}

} // namespace

TEST(ScrollEvents, AWheelsNotchIsOne) {
    const ScrollEvent down = wheel({}, {0, -120}, Qt::NoScrollPhase);
    EXPECT_FALSE(down.precise);
    EXPECT_EQ(down.delta, QPointF(0, -1));
    EXPECT_EQ(wheel({}, {240, 0}, Qt::NoScrollPhase).delta, QPointF(2, 0));
}

TEST(ScrollEvents, ATouchpadsMovementIsInPointsAndHasPhases) {
    const ScrollEvent moved = wheel({-13, 4}, {-104, 32}, Qt::ScrollUpdate);
    EXPECT_TRUE(moved.precise);
    EXPECT_EQ(moved.delta, QPointF(-13, 4));
    EXPECT_EQ(moved.phase, ScrollEvent::Phase::Changed);
    EXPECT_FALSE(moved.momentum);
    EXPECT_EQ(wheel({}, {}, Qt::ScrollBegin).phase, ScrollEvent::Phase::Began);
    EXPECT_EQ(wheel({}, {}, Qt::ScrollEnd).phase, ScrollEvent::Phase::Ended);
}

TEST(ScrollEvents, WhatGoesOnByItselfIsMomentum) {
    const ScrollEvent event = wheel({-13, 4}, {-104, 32}, Qt::ScrollMomentum);
    EXPECT_TRUE(event.precise);
    EXPECT_TRUE(event.momentum);
}
