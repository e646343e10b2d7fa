#include "platform/linux/capture/ScreenRows.h"

#include <gtest/gtest.h>
#include <random>

using namespace amberquill::desktop;

namespace {

QImage shrunk(const QImage& image, int shrink) {
    RowShrinker shrinker(image.size(), shrink);
    for (int y = 0; y < image.height(); ++y) {
        shrinker.add(reinterpret_cast<const QRgb*>(image.constScanLine(y)));
    }
    return shrinker.image();
}

// The mean, computed in the obvious way.
QRgb meanOf(const QImage& image, const QRect& block) {
    const QRect part = block & image.rect();
    const int count = part.width() * part.height();
    int red = 0;
    int green = 0;
    int blue = 0;
    for (int y = part.top(); y <= part.bottom(); ++y) {
        for (int x = part.left(); x <= part.right(); ++x) {
            const QRgb pixel = image.pixel(x, y);
            red += qRed(pixel);
            green += qGreen(pixel);
            blue += qBlue(pixel);
        }
    }
    return qRgb((red + count / 2) / count, (green + count / 2) / count, (blue + count / 2) / count);
}

QImage noise(int width, int height) {
    std::minstd_rand random(7); // NOLINT(cert-msc51-cpp): the same values in each run
    QImage image(width, height, QImage::Format_RGB32);
    for (int y = 0; y < height; ++y) {
        for (int x = 0; x < width; ++x) {
            image.setPixel(x, y, static_cast<QRgb>(random() * 3));
        }
    }
    return image;
}

} // namespace

TEST(RowShrinker, EachPixelIsTheMeanOfItsBlock) {
    const QImage image = noise(61, 35);
    for (const int shrink : {1, 2, 7, 8, 34, 35, 100}) {
        const QImage small = shrunk(image, shrink);
        ASSERT_EQ(small.size(), QSize((61 + shrink - 1) / shrink, (35 + shrink - 1) / shrink));
        EXPECT_EQ(small.format(), QImage::Format_RGB32);
        for (int y = 0; y < small.height(); ++y) {
            for (int x = 0; x < small.width(); ++x) {
                EXPECT_EQ(small.pixel(x, y), meanOf(image, {x * shrink, y * shrink, shrink, shrink}))
                    << x << ',' << y << " by " << shrink;
            }
        }
    }
}

TEST(RowShrinker, TheLargestBlockOfWhiteIsWhite) {
    QImage image(RowShrinker::most, RowShrinker::most, QImage::Format_RGB32);
    image.fill(Qt::white);
    const QImage small = shrunk(image, RowShrinker::most);
    ASSERT_EQ(small.size(), QSize(1, 1));
    EXPECT_EQ(small.pixel(0, 0), 0xFFFFFFFF);
}

TEST(RowShrinker, TheHighestByteDoesNotMatter) {
    const std::vector<QRgb> row{0x00102030, 0x7F102030};
    RowShrinker shrinker({2, 1}, 2);
    shrinker.add(row.data());
    EXPECT_EQ(shrinker.image().pixel(0, 0), 0xFF102030);
}

TEST(RowShrinker, AnImageWithMissingRowsIsNull) {
    const std::vector<QRgb> row{0xFF102030};
    RowShrinker shrinker({1, 2}, 2);
    EXPECT_TRUE(shrinker.image().isNull());
    shrinker.add(row.data());
    EXPECT_TRUE(shrinker.image().isNull());
    shrinker.add(row.data());
    shrinker.add(row.data()); // one too many
    EXPECT_EQ(shrinker.image().pixel(0, 0), 0xFF102030);
}
