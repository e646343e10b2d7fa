#include "views/BackgroundWash.h"

#include <QColor>
#include <array>
#include <cmath>
#include <gtest/gtest.h>

using namespace amberquill;

namespace {

struct ThemeColours {
    BackgroundTheme theme;
    std::array<double, 3> top;
    std::array<double, 3> bottom;
};

const std::array<ThemeColours, 3> themes = {{
    {BackgroundTheme::Blue, {0.18, 0.35, 0.63}, {0.04, 0.10, 0.28}},
    {BackgroundTheme::Purple, {0.40, 0.25, 0.62}, {0.14, 0.07, 0.30}},
    {BackgroundTheme::Green, {0.13, 0.47, 0.38}, {0.02, 0.17, 0.14}},
}};

// The wash over a grey backdrop, by the formula: premultiplied components, then alpha.
std::array<double, 4> expected(const ThemeColours& colours, const QSize& size, double ratio, int x, int y) {
    const double px = x + 0.5;
    const double py = y + 0.5;
    const double part =
        (px * size.width() + py * size.height()) / (std::pow(size.width(), 2) + std::pow(size.height(), 2));
    const double glow = 0.12 * std::max(0.0, 1 - std::hypot(px - size.width() / 2.0, py) / (900 * ratio));
    std::array<double, 4> result{};
    for (std::size_t i = 0; i < 3; ++i) {
        const double top = colours.top.at(i);
        const double bottom = colours.bottom.at(i);
        const double middle = (top + bottom) / 2;
        const double colour = part < 0.45 ? top + (middle - top) * part / 0.45
                                          : middle + (bottom - middle) * (part - 0.45) / 0.55;
        result.at(i) = colour * 0.58 * (1 - glow) + glow;
    }
    result[3] = 0.58 * (1 - glow) + glow;
    return result;
}

void expectWash(const QSize& size, double ratio) {
    for (const ThemeColours& colours : themes) {
        const QImage image = backgroundWash(colours.theme, size, ratio);
        ASSERT_EQ(image.size(), size);
        ASSERT_EQ(image.format(), QImage::Format_ARGB32_Premultiplied);
        for (const QPoint point :
             {QPoint(0, 0), QPoint(size.width() / 2, 0), QPoint(size.width() - 1, 0),
              QPoint(size.width() / 2, size.height() / 2), QPoint(0, size.height() - 1),
              QPoint(size.width() - 1, size.height() - 1), QPoint(size.width() / 3, 40)}) {
            const QRgb pixel = reinterpret_cast<const QRgb*>(image.constScanLine(point.y()))[point.x()];
            const auto wanted = expected(colours, size, ratio, point.x(), point.y());
            EXPECT_NEAR(qRed(pixel), wanted[0] * 255, 1.01);
            EXPECT_NEAR(qGreen(pixel), wanted[1] * 255, 1.01);
            EXPECT_NEAR(qBlue(pixel), wanted[2] * 255, 1.01);
            EXPECT_NEAR(qAlpha(pixel), wanted[3] * 255, 1.01);
        }
    }
}

} // namespace

TEST(BackgroundWash, EachThemeHasItsGradientUnderTheGlow) {
    expectWash({1920, 1080}, 1);
    expectWash({1280, 800}, 1);
}

TEST(BackgroundWash, TheGlowGrowsWithThePixelsOfAPoint) {
    expectWash({2560, 1600}, 2);
}

TEST(BackgroundWash, NoComponentExceedsTheAlpha) {
    const QImage image = backgroundWash(BackgroundTheme::Purple, {640, 400}, 1);
    for (int y = 0; y < image.height(); ++y) {
        const auto* line = reinterpret_cast<const QRgb*>(image.constScanLine(y));
        for (int x = 0; x < image.width(); ++x) {
            ASSERT_LE(std::max({qRed(line[x]), qGreen(line[x]), qBlue(line[x])}), qAlpha(line[x]));
        }
    }
}

TEST(BackgroundWash, NeighbouringPixelsShowNoBands) {
    // Dithering: the mean of a block follows the gradient to a fraction of a level.
    const QSize size(1920, 1080);
    const QImage image = backgroundWash(BackgroundTheme::Blue, size, 1);
    for (const QPoint corner : {QPoint(1600, 800), QPoint(200, 600), QPoint(1000, 1000)}) {
        double sum = 0;
        double wanted = 0;
        for (int y = 0; y < 8; ++y) {
            for (int x = 0; x < 8; ++x) {
                const QPoint at = corner + QPoint(x, y);
                sum += qRed(reinterpret_cast<const QRgb*>(image.constScanLine(at.y()))[at.x()]);
                wanted += expected(themes[0], size, 1, at.x(), at.y())[0] * 255;
            }
        }
        EXPECT_NEAR(sum / 64, wanted / 64, 0.15);
    }
}

TEST(BackgroundWash, AnEmptySizeIsAnEmptyImage) {
    EXPECT_TRUE(backgroundWash(BackgroundTheme::Blue, {0, 0}, 1).isNull());
}

TEST(BackgroundWash, WithoutABackdropAnOpaqueBackgroundIsTheWashOverBlack) {
    const QSize size(320, 200);
    const QImage wash = backgroundWash(BackgroundTheme::Blue, size, 1);
    const QImage image = opaqueBackground(BackgroundTheme::Blue, size, 1, {});
    ASSERT_EQ(image.format(), QImage::Format_RGB32);
    for (const QPoint point : {QPoint(0, 0), QPoint(160, 0), QPoint(319, 199)}) {
        const QRgb premultiplied = reinterpret_cast<const QRgb*>(wash.constScanLine(point.y()))[point.x()];
        EXPECT_EQ(reinterpret_cast<const QRgb*>(image.constScanLine(point.y()))[point.x()],
                  premultiplied | 0xff000000U);
    }
}

TEST(BackgroundWash, ABackdropShinesThroughItWhateverItsSize) {
    QImage backdrop(20, 10, QImage::Format_RGB32);
    backdrop.fill(QColor(200, 100, 40));
    const QSize size(320, 200);
    const QImage wash = backgroundWash(BackgroundTheme::Green, size, 1);
    const QImage image = opaqueBackground(BackgroundTheme::Green, size, 1, backdrop);
    ASSERT_EQ(image.size(), size);
    for (const QPoint point : {QPoint(0, 0), QPoint(160, 0), QPoint(319, 199)}) {
        const QRgb over = reinterpret_cast<const QRgb*>(wash.constScanLine(point.y()))[point.x()];
        const double through = 1 - qAlpha(over) / 255.0;
        const QRgb seen = image.pixel(point);
        EXPECT_NEAR(qRed(seen), qRed(over) + 200 * through, 1.5);
        EXPECT_NEAR(qGreen(seen), qGreen(over) + 100 * through, 1.5);
        EXPECT_NEAR(qBlue(seen), qBlue(over) + 40 * through, 1.5);
    }
}
