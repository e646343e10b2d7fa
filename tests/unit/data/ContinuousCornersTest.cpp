#include "data/ContinuousCorners.h"

#include <cmath>
#include <gtest/gtest.h>
#include <numbers>

using namespace amberquill;

namespace {

// The distance along a side from the tip of a square's top left corner to the outline on its diagonal.
double diagonalCut(const QPainterPath& path) {
    const double middle = path.boundingRect().width() / 2;
    double inset = 0;
    while (inset < middle && !path.contains(QPointF(inset, inset))) {
        inset += 0.01;
    }
    EXPECT_LT(inset, middle) << "the outline does not even contain its middle";
    return inset;
}

} // namespace

TEST(ContinuousCorners, TheMiddleOfACornerIsThatOfAnArc) {
    const QPainterPath path = continuousRoundedRect({0, 0, 200, 200}, 40);
    EXPECT_NEAR(diagonalCut(path), 40 * (1 - std::numbers::sqrt2 / 2), 0.1);
}

TEST(ContinuousCorners, TheCurveBeginsEarlierThanAnArc) {
    const QPainterPath path = continuousRoundedRect({0, 0, 200, 200}, 40);
    // An arc of radius 40 would touch the edge from x = 40 on.
    EXPECT_FALSE(path.contains(QPointF(41, 0.2)));
    EXPECT_TRUE(path.contains(QPointF(62, 0.2)));
}

TEST(ContinuousCorners, ACapsuleEndsInHalfCircles) {
    const QPainterPath path = continuousRoundedRect({0, 0, 280, 44}, 22);
    for (int degrees = 100; degrees < 260; degrees += 10) {
        const double angle = degrees * std::numbers::pi / 180;
        const QPointF direction(std::cos(angle), std::sin(angle));
        EXPECT_TRUE(path.contains(QPointF(22, 22) + direction * 21.8)) << degrees;
        EXPECT_FALSE(path.contains(QPointF(22, 22) + direction * 22.2)) << degrees;
    }
}

TEST(ContinuousCorners, TheOutlineTouchesAllSidesOfItsRectangle) {
    const QRectF rect(10, 20, 123, 77);
    const QRectF bounds = continuousRoundedRect(rect, 18).boundingRect();
    EXPECT_NEAR(bounds.left(), rect.left(), 1e-6);
    EXPECT_NEAR(bounds.top(), rect.top(), 1e-6);
    EXPECT_NEAR(bounds.right(), rect.right(), 1e-6);
    EXPECT_NEAR(bounds.bottom(), rect.bottom(), 1e-6);
}

TEST(ContinuousCorners, WithoutARadiusItIsARectangle) {
    EXPECT_TRUE(continuousRoundedRect({0, 0, 10, 10}, 0).contains(QPointF(0.1, 0.1)));
}
