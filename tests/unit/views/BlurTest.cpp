#include "views/Blur.h"

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
