#include "platform/linux/decoder/pictures/ImageFitting.h"

#include "support/IconFiles.h"

#include <QColorSpace>
#include <gtest/gtest.h>

using namespace amberquill;
using namespace amberquill::desktop;

namespace {

void expectIsPicture(const QImage& image, int edge) {
    EXPECT_EQ(image.size(), QSize(edge, edge));
    EXPECT_EQ(image.format(), QImage::Format_ARGB32_Premultiplied);
    EXPECT_EQ(image.devicePixelRatio(), 1.0);
}

// The pixels in memory, premultiplied.
QRgb stored(const QImage& image, int x, int y) {
    return reinterpret_cast<const QRgb*>(image.constScanLine(y))[x];
}

int largestDifference(const QImage& image, QRgb from) {
    int largest = 0;
    for (int y = 0; y < image.height(); ++y) {
        for (int x = 0; x < image.width(); ++x) {
            const auto pixel = stored(image, x, y);
            for (const int shift : {0, 8, 16, 24}) {
                const auto one = static_cast<int>((pixel >> shift) & 0xFFU);
                const auto other = static_cast<int>((from >> shift) & 0xFFU);
                largest = std::max(largest, std::abs(one - other));
            }
        }
    }
    return largest;
}

} // namespace

TEST(ImageFitting, TheFittedSizeKeepsProportionsAndFillsOneSide) {
    EXPECT_EQ(fittedSize({256, 256}, 120), QSize(120, 120));
    EXPECT_EQ(fittedSize({200, 100}, 120), QSize(120, 60));
    EXPECT_EQ(fittedSize({10, 30}, 120), QSize(40, 120));
    EXPECT_EQ(fittedSize({1, 30'000}, 120), QSize(1, 120));
    EXPECT_EQ(fittedSize({16, 16}, 1), QSize(1, 1));
}

TEST(ImageFitting, APictureOfTheRightSizeIsUnchanged) {
    QImage image(5, 5, QImage::Format_ARGB32_Premultiplied);
    for (int y = 0; y < 5; ++y) {
        for (int x = 0; x < 5; ++x) {
            image.setPixelColor(x, y, QColor(x * 50, y * 50, 100, 255 - x * 20));
        }
    }
    const auto fitted = fittedImage(image, 5);
    expectIsPicture(fitted, 5);
    EXPECT_EQ(fitted, image);
}

TEST(ImageFitting, APlainColourStaysTheSame) {
    for (const auto& colour : {QColor(255, 0, 0), QColor(10, 200, 90, 128), QColor(255, 255, 255)}) {
        for (const int source : {7, 16, 60, 119, 121, 128, 256, 300, 512, 1000, 2048}) {
            const auto fitted = fittedImage(filledImage(source, source, colour), 120);
            expectIsPicture(fitted, 120);
            EXPECT_LE(largestDifference(fitted, qPremultiply(colour.rgba())), 1) << source;
        }
    }
}

TEST(ImageFitting, APictureThatIsNotSquareIsCentred) {
    const auto wide = fittedImage(filledImage(200, 100, Qt::blue), 100);
    expectIsPicture(wide, 100);
    EXPECT_EQ(stored(wide, 50, 24), 0U);
    EXPECT_EQ(stored(wide, 50, 25), qRgba(0, 0, 255, 255));
    EXPECT_EQ(stored(wide, 50, 74), qRgba(0, 0, 255, 255));
    EXPECT_EQ(stored(wide, 50, 75), 0U);
    EXPECT_EQ(stored(wide, 0, 50), qRgba(0, 0, 255, 255));
    EXPECT_EQ(stored(wide, 99, 50), qRgba(0, 0, 255, 255));
    const auto tall = fittedImage(filledImage(20, 40, Qt::blue), 100);
    EXPECT_EQ(stored(tall, 24, 50), 0U);
    EXPECT_EQ(stored(tall, 25, 50), qRgba(0, 0, 255, 255));
    EXPECT_EQ(stored(tall, 75, 50), 0U);
}

TEST(ImageFitting, ColoursNeverExceedTheirAlpha) {
    QImage image(64, 64, QImage::Format_ARGB32);
    for (int y = 0; y < 64; ++y) {
        for (int x = 0; x < 64; ++x) {
            image.setPixel(x, y, (x / 3 + y / 5) % 2 == 0 ? qRgba(255, 255, 255, 255) : qRgba(255, 0, 80, 0));
        }
    }
    for (const int edge : {20, 50, 63, 65, 100, 200}) {
        const auto fitted = fittedImage(image, edge);
        for (int y = 0; y < edge; ++y) {
            for (int x = 0; x < edge; ++x) {
                const auto pixel = stored(fitted, x, y);
                ASSERT_LE(std::max({qRed(pixel), qGreen(pixel), qBlue(pixel)}), qAlpha(pixel));
            }
        }
    }
}

TEST(ImageFitting, DetailsFinerThanAPixelAreAveraged) {
    QImage checks(480, 480, QImage::Format_ARGB32);
    for (int y = 0; y < 480; ++y) {
        for (int x = 0; x < 480; ++x) {
            checks.setPixel(x, y, (x + y) % 2 == 0 ? qRgb(255, 255, 255) : qRgb(0, 0, 0));
        }
    }
    for (const int edge : {60, 100, 120, 160}) {
        EXPECT_LE(largestDifference(fittedImage(checks, edge), qRgba(128, 128, 128, 255)), 6) << edge;
    }
}

TEST(ImageFitting, AnEdgeStaysSharpAndInPlaceWhenShrunk) {
    for (const int source : {128, 240, 256, 512, 1024}) {
        auto image = filledImage(source, source, Qt::black);
        for (int y = 0; y < source; ++y) {
            for (int x = source / 2; x < source; ++x) {
                image.setPixel(x, y, qRgb(255, 255, 255));
            }
        }
        const auto fitted = fittedImage(image, 120);
        EXPECT_LE(qRed(stored(fitted, 58, 60)), 20) << source;
        EXPECT_GE(qRed(stored(fitted, 61, 60)), 235) << source;
        EXPECT_NEAR(qRed(stored(fitted, 59, 60)) + qRed(stored(fitted, 60, 60)), 255, 2) << source;
    }
}

TEST(ImageFitting, AnEnlargedEdgeRisesSmoothly) {
    auto image = filledImage(16, 16, Qt::black);
    for (int y = 0; y < 16; ++y) {
        for (int x = 8; x < 16; ++x) {
            image.setPixel(x, y, qRgb(255, 255, 255));
        }
    }
    const auto fitted = fittedImage(image, 120);
    int largestStep = 0;
    for (int x = 50; x < 70; ++x) {
        largestStep = std::max(largestStep, qRed(stored(fitted, x, 60)) - qRed(stored(fitted, x - 1, 60)));
    }
    EXPECT_LE(largestStep, 40); // one source pixel is seven and a half wide
    EXPECT_LE(qRed(stored(fitted, 45, 60)), 5);
    EXPECT_GE(qRed(stored(fitted, 74, 60)), 250);
}

TEST(ImageFitting, RotationAndFittingCommute) {
    QImage image(37, 53, QImage::Format_ARGB32);
    for (int y = 0; y < 53; ++y) {
        for (int x = 0; x < 37; ++x) {
            image.setPixel(x, y, qRgba(x * 6, y * 4, (x * y) % 256, 200));
        }
    }
    const auto straight = fittedImage(image.mirrored(true, true), 21);
    const auto turned = fittedImage(image, 21).mirrored(true, true);
    for (int y = 0; y < 21; ++y) {
        for (int x = 3; x < 18; ++x) {
            for (const int shift : {0, 8, 16, 24}) {
                EXPECT_NEAR((stored(straight, x, y) >> shift) & 0xFFU,
                            (stored(turned, x, y) >> shift) & 0xFFU, 1);
            }
        }
    }
}

TEST(ImageFitting, OtherColourSpacesAreConvertedToSrgb) {
    auto image = filledImage(32, 32, QColor(128, 255, 64));
    image.setColorSpace(QColorSpace(QColorSpace::DisplayP3));
    auto expected = image;
    expected.convertToColorSpace(QColorSpace(QColorSpace::SRgb));
    const auto fitted = fittedImage(image, 24);
    EXPECT_FALSE(fitted.colorSpace().isValid());
    EXPECT_LE(largestDifference(fitted, expected.pixel(0, 0)), 2);
    EXPECT_NE(image.pixel(0, 0), expected.pixel(0, 0));
    image.setColorSpace(QColorSpace(QColorSpace::Primaries::SRgb, 2.0F)); // a bare gamma value
    EXPECT_EQ(largestDifference(fittedImage(image, 24), image.pixel(0, 0)), 0);
}

// As many programs write it into each PNG file.
TEST(ImageFitting, SrgbPrimariesWithAnotherGammaAreTakenAsSrgb) {
    const QColorSpace usual({0.3127, 0.3290}, {0.64, 0.33}, {0.30, 0.60}, {0.15, 0.06},
                            QColorSpace::TransferFunction::Gamma, 1.0F / 0.45455F);
    auto image = filledImage(32, 32, QColor(5, 20, 60));
    image.setColorSpace(usual);
    EXPECT_EQ(largestDifference(fittedImage(image, 24), image.pixel(0, 0)), 0);
}

TEST(ImageFitting, FormatsWithFewColoursAreFitted) {
    for (const auto format : {QImage::Format_Mono, QImage::Format_Indexed8, QImage::Format_Grayscale8,
                              QImage::Format_RGB16, QImage::Format_RGBA64}) {
        const auto fitted = fittedImage(filledImage(16, 16, Qt::white).convertToFormat(format), 24);
        expectIsPicture(fitted, 24);
        EXPECT_LE(largestDifference(fitted, qRgba(255, 255, 255, 255)), 1);
    }
}

TEST(ImageFitting, ANullPictureStaysNull) {
    EXPECT_TRUE(fittedImage(QImage(), 24).isNull());
    EXPECT_TRUE(fittedImage(filledImage(4, 4, Qt::red), 0).isNull());
}
