#include "views/Backdrop.h"

#include "support/LogRecorder.h"
#include "views/BackgroundWash.h"

#include <QColor>
#include <atomic>
#include <gtest/gtest.h>

using namespace amberquill;

namespace {

const QSize pixels(640, 400);

BackgroundLook look(BackgroundTheme theme = BackgroundTheme::Blue, bool isTranslucent = false) {
    return {theme, pixels, 1, isTranslucent};
}

QImage plain(const QSize& size, const QColor& colour) {
    QImage image(size, QImage::Format_RGB32);
    image.fill(colour);
    return image;
}

void expectAbout(const QImage& image, const QPoint& point, const std::array<double, 3>& wanted) {
    const QRgb pixel = image.pixel(point);
    EXPECT_NEAR(qRed(pixel), wanted[0], 1.5) << point.x() << ", " << point.y();
    EXPECT_NEAR(qGreen(pixel), wanted[1], 1.5) << point.x() << ", " << point.y();
    EXPECT_NEAR(qBlue(pixel), wanted[2], 1.5) << point.x() << ", " << point.y();
}

// A wash's pixel over an opaque colour.
std::array<double, 3> over(QRgb wash, const QColor& behind) {
    const double through = 1 - qAlpha(wash) / 255.0;
    return {qRed(wash) + behind.red() * through, qGreen(wash) + behind.green() * through,
            qBlue(wash) + behind.blue() * through};
}

} // namespace

TEST(Backdrop, ShrinksByEightPointsEachWay) {
    EXPECT_EQ(backdropShrink(1), 8);
    EXPECT_EQ(backdropShrink(1.25), 10);
    EXPECT_EQ(backdropShrink(2), 16);
    EXPECT_EQ(backdropShrink(0.01), 1);
}

TEST(Backdrop, EachThemesWashLiesOverTheScreen) {
    const QColor behind(200, 100, 40);
    for (const BackgroundTheme theme : allBackgroundThemes) {
        const Backdrop backdrop([&] { return ScreenPicture{plain({80, 50}, behind), {}}; }, look(theme));
        const QImage picture = backdrop.picture(look(theme));
        ASSERT_EQ(picture.size(), pixels);
        ASSERT_EQ(picture.format(), QImage::Format_RGB32);
        const QImage wash = backgroundWash(theme, pixels, 1);
        for (const QPoint point : {QPoint(0, 0), QPoint(639, 0), QPoint(320, 1), QPoint(320, 200),
                                   QPoint(100, 333), QPoint(0, 399), QPoint(639, 399)}) {
            const QRgb premultiplied =
                reinterpret_cast<const QRgb*>(wash.constScanLine(point.y()))[point.x()];
            expectAbout(picture, point, over(premultiplied, behind));
        }
    }
}

TEST(Backdrop, AnEdgeOnTheScreenIsBlurred) {
    QImage halves = plain({80, 50}, Qt::black);
    for (int y = 0; y < halves.height(); ++y) {
        auto* line = reinterpret_cast<QRgb*>(halves.scanLine(y));
        std::fill(line + halves.width() / 2, line + halves.width(), 0xFFFFFFFFU);
    }
    const Backdrop backdrop([&] { return ScreenPicture{halves, {}}; }, look());
    const QImage picture = backdrop.picture(look());
    const QImage wash = backgroundWash(BackgroundTheme::Blue, pixels, 1);
    const auto lightBehind = [&](int x) {
        const QRgb over = reinterpret_cast<const QRgb*>(wash.constScanLine(200))[x];
        return (qRed(picture.pixel(x, 200)) - qRed(over)) / (1 - qAlpha(over) / 255.0) / 255;
    };
    // By the Gaussian: one half at the edge, 16 % at one standard deviation (30 points).
    EXPECT_NEAR(lightBehind(320), 0.5, 0.03);
    EXPECT_NEAR(lightBehind(290), 0.16, 0.03);
    EXPECT_NEAR(lightBehind(350), 0.84, 0.03);
    EXPECT_NEAR(lightBehind(200), 0, 0.02);
    EXPECT_NEAR(lightBehind(440), 1, 0.02);
}

TEST(Backdrop, AGentleSlopeOnTheScreenHasNoStairs) {
    QImage slope(80, 50, QImage::Format_RGB32);
    for (int y = 0; y < slope.height(); ++y) {
        for (int x = 0; x < slope.width(); ++x) {
            const int level = 100 + x / 8;
            slope.setPixel(x, y, qRgb(level, level, level));
        }
    }
    const Backdrop backdrop([&] { return ScreenPicture{slope, {}}; }, look());
    const QImage picture = backdrop.picture(look());
    // The means of blocks along the slope, each of several dither cells.
    constexpr int block = 8;
    constexpr int height = 10 * block;
    std::vector<double> means;
    for (int left = 120; left < 520; left += block) {
        double sum = 0;
        for (int y = 160; y < 160 + height; ++y) {
            for (int x = left; x < left + block; ++x) {
                sum += qRed(picture.pixel(x, y));
            }
        }
        means.push_back(sum / (block * height));
    }
    for (std::size_t i = 1; i + 1 < means.size(); ++i) {
        EXPECT_NEAR(means[i], (means[i - 1] + means[i + 1]) / 2, 0.05) << i;
    }
}

TEST(Backdrop, WithoutAPictureOfTheScreenItIsTheWashAlone) {
    const Backdrop backdrop([] { return ScreenPicture(); }, look());
    EXPECT_TRUE(backdrop.whole().isNull());
    EXPECT_EQ(backdrop.picture(look()), opaqueBackground(BackgroundTheme::Blue, pixels, 1, {}));
}

TEST(Backdrop, AMissingPictureOfTheScreenIsLogged) {
    const auto logOf = [](bool isTranslucent) {
        return debugLog("amberquill.views", [isTranslucent] {
            const BackgroundLook wanted = look(BackgroundTheme::Blue, isTranslucent);
            static_cast<void>(Backdrop([] { return ScreenPicture(); }, wanted).picture(wanted));
        });
    };
    EXPECT_NE(logOf(false).find("no picture of the screen"), std::string::npos);
    EXPECT_EQ(logOf(true), "") << "nothing was to be captured";
}

TEST(Backdrop, AnOpaqueWindowIsNeverBlack) {
    const Backdrop unread([] { return ScreenPicture(); }, look(), Backdrop::Window::Opaque);
    EXPECT_EQ(unread.whole(), unread.picture(look()));
    const QImage whole = plain(pixels, Qt::red);
    const Backdrop read(
        [&] {
            return ScreenPicture{plain({80, 50}, Qt::red), whole};
        },
        look(), Backdrop::Window::Opaque);
    EXPECT_EQ(read.whole(), whole);
}

TEST(Backdrop, HiddenPartsOfTheScreenAreFilled) {
    const QColor behind(200, 100, 40);
    const QImage desktop = plain({80, 50}, behind);
    QImage withDialogs = desktop;
    for (int y = 10; y < 20; ++y) {
        auto* line = reinterpret_cast<QRgb*>(withDialogs.scanLine(y));
        std::fill(line + 30, line + 50, 0xFFFFFFFFU);
        std::fill(line + 70, line + 80, 0xFFFFFFFFU);
    }
    const Backdrop wanted([&] { return ScreenPicture{desktop, {}}; }, look());
    const Backdrop backdrop(
        [&] {
            return ScreenPicture{withDialogs, {}};
        },
        look(), Backdrop::Window::Translucent,
        {QRect(30, 10, 20, 6), QRect(30, 16, 20, 4), QRect(70, 10, 30, 10)});
    EXPECT_EQ(backdrop.picture(look()), wanted.picture(look()));
}

TEST(Backdrop, ForATranslucentLookItIsTheTranslucentWash) {
    const Backdrop backdrop([] { return ScreenPicture(); }, look(BackgroundTheme::Green, true));
    EXPECT_TRUE(backdrop.isTranslucent());
    EXPECT_EQ(backdrop.picture(look(BackgroundTheme::Green, true)),
              backgroundWash(BackgroundTheme::Green, pixels, 1));
}

TEST(Backdrop, TheScreenIsReadOnceForEveryLook) {
    std::atomic<int> readings = 0;
    const QColor behind(20, 200, 90);
    const QImage whole = plain(pixels, behind);
    const Backdrop backdrop(
        [&] {
            ++readings;
            return ScreenPicture{plain({80, 50}, behind), whole};
        },
        look());
    EXPECT_EQ(backdrop.whole(), whole);
    static_cast<void>(backdrop.picture(look()));
    BackgroundLook other = look(BackgroundTheme::Purple);
    other.pixels = {320, 300};
    const QImage picture = backdrop.picture(other);
    ASSERT_EQ(picture.size(), other.pixels);
    const QImage wash = backgroundWash(other.theme, other.pixels, 1);
    expectAbout(picture, {160, 150},
                over(reinterpret_cast<const QRgb*>(wash.constScanLine(150))[160], behind));
    EXPECT_EQ(readings, 1);
}
