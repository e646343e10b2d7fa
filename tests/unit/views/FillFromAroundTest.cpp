#include "views/FillFromAround.h"

#include <gtest/gtest.h>

using namespace amberquill;

namespace {

constexpr QRgb hole = 0xFFFF00FF;

QImage plain(const QSize& size, QRgb colour) {
    QImage image(size, QImage::Format_RGB32);
    image.fill(colour);
    return image;
}

} // namespace

TEST(FillFromAround, GoesFromOneSideToTheOther) {
    QImage image = plain({5, 1}, hole);
    image.setPixel(0, 0, 0xFF000000);
    image.setPixel(4, 0, 0xFF808080);
    fillFromAround(image, {QRect(1, 0, 3, 1)});
    EXPECT_EQ(image.pixel(0, 0), 0xFF000000);
    EXPECT_EQ(image.pixel(1, 0), 0xFF202020);
    EXPECT_EQ(image.pixel(2, 0), 0xFF404040);
    EXPECT_EQ(image.pixel(3, 0), 0xFF606060);
    EXPECT_EQ(image.pixel(4, 0), 0xFF808080);
}

TEST(FillFromAround, AtAnEdgeOnlyWhatIsInTheImageCounts) {
    QImage image = plain({4, 4}, 0xFF102030);
    image.setPixel(3, 3, hole);
    image.setPixel(3, 2, hole);
    fillFromAround(image, {QRect(3, 2, 10, 10)});
    EXPECT_EQ(image, plain({4, 4}, 0xFF102030));
}

TEST(FillFromAround, PartsThatTouchAreFilledAsOne) {
    QImage image = plain({7, 1}, 0xFF102030);
    for (int x = 1; x < 6; ++x) {
        image.setPixel(x, 0, hole);
    }
    fillFromAround(image, {QRect(1, 0, 2, 1), QRect(4, 0, 2, 1), QRect(3, 0, 1, 1)});
    EXPECT_EQ(image, plain({7, 1}, 0xFF102030));
}

TEST(FillFromAround, WhatIsOutsideOrEverythingIsLeftAsItIs) {
    QImage image = plain({3, 3}, hole);
    fillFromAround(image, {QRect(5, 5, 2, 2), QRect(-9, -9, 2, 2), QRect()});
    fillFromAround(image, {QRect(-1, -1, 9, 9)});
    EXPECT_EQ(image, plain({3, 3}, hole));
}
