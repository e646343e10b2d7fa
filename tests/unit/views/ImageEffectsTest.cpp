#include "views/ImageEffects.h"

#include <QColor>
#include <QRgba64>
#include <algorithm>
#include <cmath>
#include <gtest/gtest.h>
#include <numbers>

using namespace amberquill;

namespace {

QImage dot(int size) {
    QImage image(size, size, QImage::Format_Alpha8);
    image.fill(0);
    for (int y = -2; y <= 2; ++y) {
        for (int x = -2; x <= 2; ++x) {
            image.scanLine(size / 2 + y)[size / 2 + x] = 255;
        }
    }
    return image;
}

double sum(const QImage& image) {
    double total = 0;
    for (int y = 0; y < image.height(); ++y) {
        for (int x = 0; x < image.width(); ++x) {
            total += image.constScanLine(y)[x];
        }
    }
    return total;
}

QImage filled(const QColor& colour) {
    QImage image(2, 2, QImage::Format_ARGB32_Premultiplied);
    image.fill(colour);
    return image;
}

constexpr QRgb hole = 0xFFFF00FF;

QImage plain(const QSize& size, QRgb colour) {
    QImage image(size, QImage::Format_RGB32);
    image.fill(colour);
    return image;
}

} // namespace

TEST(Blur, SpreadsAsTheGaussianOfItsDeviationDoes) {
    for (const double sigma : {1.0, 2.0, 4.0}) {
        QImage image = dot(65);
        blurAlpha(image, sigma);
        double spread = 0;
        for (int x = 0; x < image.width(); ++x) {
            for (int y = 0; y < image.height(); ++y) {
                spread += image.constScanLine(y)[x] * std::pow(x - 32, 2);
            }
        }
        // The five pixels of the dot itself have a variance of 2.
        EXPECT_NEAR(spread / sum(image), sigma * sigma + 2, sigma * sigma * 0.35) << sigma;
    }
}

TEST(Blur, KeepsTheWholeOfTheInkAwayFromTheEdges) {
    QImage image = dot(65);
    const double before = sum(image);
    blurAlpha(image, 2);
    EXPECT_NEAR(sum(image), before, before * 0.05);
}

TEST(Blur, NoDeviationChangesNothing) {
    QImage image = dot(33);
    const QImage before = image.copy();
    blurAlpha(image, 0);
    EXPECT_EQ(image, before);
}

TEST(Blur, AnImageSmallerThanTheBlurIsSafe) {
    QImage image(2, 1, QImage::Format_Alpha8);
    image.fill(255);
    blurAlpha(image, 8);
    EXPECT_LT(image.constScanLine(0)[0], 100);
}

TEST(ColourBlur, APlainColourStaysItselfUpToTheEdges) {
    for (const double sigma : {0.0, 1.0, 5.0, 500.0}) {
        QImage image(40, 7, QImage::Format_RGBX64);
        image.fill(QColor(0xFF0180FE));
        const QImage before = image.copy();
        blurColours(image, sigma);
        EXPECT_EQ(image, before) << sigma;
    }
}

TEST(ColourBlur, EachChannelSpreadsAsTheGaussianDoes) {
    constexpr double sigma = 4;
    QImage image(81, 81, QImage::Format_RGBX64);
    image.fill(Qt::black);
    for (int y = 30; y <= 50; ++y) {
        for (int x = 30; x <= 50; ++x) {
            image.setPixel(x, y, 0xFFFF8040);
        }
    }
    blurColours(image, sigma);
    // The profile across the middle of an edge of the square, where the other edges hardly count.
    for (int distance = -8; distance <= 8; ++distance) {
        const double part = 0.5 * std::erfc((distance - 0.5) / (sigma * std::numbers::sqrt2)) *
                            std::erf(10.5 / (sigma * std::numbers::sqrt2));
        const QRgb pixel = image.pixel(50 + distance, 40);
        EXPECT_NEAR(qRed(pixel), 255 * part, 255 * 0.03) << distance;
        EXPECT_NEAR(qGreen(pixel), 128 * part, 128 * 0.03) << distance;
        EXPECT_NEAR(qBlue(pixel), 64 * part, 64 * 0.03) << distance;
        EXPECT_EQ(qAlpha(pixel), 255);
        EXPECT_EQ(image.pixel(40, 50 + distance), pixel) << "down as across";
    }
}

TEST(ColourBlur, NothingIsLostOrComesFromBeyondTheEdges) {
    QImage image(64, 32, QImage::Format_RGBX64);
    for (int y = 0; y < image.height(); ++y) {
        for (int x = 0; x < image.width(); ++x) {
            image.setPixel(x, y, x < 32 ? 0xFF000000 : 0xFFFFFFFF);
        }
    }
    blurColours(image, 3);
    EXPECT_EQ(image.pixel(0, 0), 0xFF000000);
    EXPECT_EQ(image.pixel(63, 31), 0xFFFFFFFF);
    for (int x = 1; x < image.width(); ++x) {
        EXPECT_GE(qRed(image.pixel(x, 9)), qRed(image.pixel(x - 1, 9)));
        EXPECT_NEAR(qRed(image.pixel(x, 9)), 255 - qRed(image.pixel(63 - x, 9)), 1);
    }
}

TEST(ColourBlur, SmallImagesAreSafe) {
    QImage pixel(1, 1, QImage::Format_RGBX64);
    pixel.fill(QColor(0xFF123456));
    blurColours(pixel, 30);
    EXPECT_EQ(pixel.pixel(0, 0), 0xFF123456);
    QImage line(1, 9, QImage::Format_RGBX64);
    line.fill(Qt::black);
    line.setPixel(0, 0, 0xFFFFFFFF);
    blurColours(line, 30);
    EXPECT_GT(qRed(line.pixel(0, 8)), 0);
    EXPECT_GE(qRed(line.pixel(0, 0)), qRed(line.pixel(0, 8)));
}

TEST(Brightness, DarkensEachComponentByTheSameAmount) {
    const QColor dark = withBrightness(filled(QColor(200, 100, 20)), -0.3).pixelColor(0, 0);
    EXPECT_NEAR(dark.red(), 200 - 76.5, 1);
    EXPECT_NEAR(dark.green(), 100 - 76.5, 1);
    EXPECT_EQ(dark.blue(), 0);
    EXPECT_EQ(dark.alpha(), 255);
}

TEST(Brightness, LeavesTransparencyAsItIs) {
    const QColor dark = withBrightness(filled(QColor(200, 100, 200, 128)), -0.3).pixelColor(1, 1);
    EXPECT_EQ(dark.alpha(), 128);
    EXPECT_NEAR(dark.red(), 200 - 76.5, 3);
    EXPECT_EQ(withBrightness(filled(Qt::transparent), -0.3).pixelColor(0, 0).alpha(), 0);
}

TEST(Brightness, ZeroIsTheImageItself) {
    const QImage image = filled(Qt::red);
    EXPECT_EQ(withBrightness(image, 0).cacheKey(), image.cacheKey());
}

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

TEST(FillFromAround, InterpolatesBetweenTheSides) {
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

TEST(FillFromAround, AtAnEdgeOnlyPixelsOfTheImageCount) {
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

TEST(FillFromAround, PartsOutsideAndPartsThatCoverEverythingChangeNothing) {
    QImage image = plain({3, 3}, hole);
    fillFromAround(image, {QRect(5, 5, 2, 2), QRect(-9, -9, 2, 2), QRect()});
    fillFromAround(image, {QRect(-1, -1, 9, 9)});
    EXPECT_EQ(image, plain({3, 3}, hole));
}
