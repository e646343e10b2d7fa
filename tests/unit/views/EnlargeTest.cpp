#include "views/Enlarge.h"

#include <QColor>
#include <QRgba64>
#include <algorithm>
#include <gtest/gtest.h>

using namespace amberquill;

TEST(Enlarge, APlainColourStaysItselfUpToTheEdges) {
    for (const QColor& colour : {QColor(Qt::white), QColor(Qt::black), QColor(Qt::transparent)}) {
        QImage image(3, 2, QImage::Format_RGBA64_Premultiplied);
        image.fill(colour);
        QImage wanted(13, 9, QImage::Format_ARGB32_Premultiplied);
        wanted.fill(colour);
        EXPECT_EQ(enlarged(image, wanted.size()), wanted) << colour.name(QColor::HexArgb).toStdString();
    }
}

TEST(Enlarge, BetweenTwoLevelsAsManyPixelsAreBrighterAsTheColourIs) {
    QImage image(2, 2, QImage::Format_RGBA64_Premultiplied);
    constexpr quint16 level = 100 * 257 + 64; // a quarter of the way to the next level
    image.fill(QColor(QRgba64::fromRgba64(level, level, level, 65535)));
    const QImage large = enlarged(image, {16, 16});
    int brighter = 0;
    for (int y = 0; y < large.height(); ++y) {
        for (int x = 0; x < large.width(); ++x) {
            ASSERT_GE(qRed(large.pixel(x, y)), 100);
            ASSERT_LE(qRed(large.pixel(x, y)), 101);
            brighter += qRed(large.pixel(x, y)) - 100;
        }
    }
    EXPECT_NEAR(brighter, 16 * 16 / 4, 4);
}

TEST(Enlarge, NoComponentExceedsTheAlpha) {
    QImage image(2, 1, QImage::Format_RGBA64_Premultiplied);
    image.setPixelColor(0, 0, QColor(255, 128, 0, 90));
    image.setPixelColor(1, 0, QColor(0, 255, 255, 3));
    const QImage large = enlarged(image, {40, 10});
    for (int y = 0; y < large.height(); ++y) {
        const auto* line = reinterpret_cast<const QRgb*>(large.constScanLine(y));
        for (int x = 0; x < large.width(); ++x) {
            ASSERT_LE(std::max({qRed(line[x]), qGreen(line[x]), qBlue(line[x])}), qAlpha(line[x]));
        }
    }
}
