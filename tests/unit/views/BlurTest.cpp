#include "views/Blur.h"

#include <QColor>
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
    // What is left at a distance from the middle of an edge of a square, where the other edges hardly count.
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

TEST(ColourBlur, SmallImagesAreSurvived) {
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
