#include "window/ApplicationIcon.h"

#include <QColor>
#include <gtest/gtest.h>

using namespace amberquill;

namespace {

bool isAmber(const QColor& colour) {
    return colour.alpha() == 255 && colour.hsvHue() > 20 && colour.hsvHue() < 50 &&
           colour.hsvSaturation() > 120;
}

} // namespace

TEST(ApplicationIcon, IsAnAmberSquareWithRoundCornersAtEachSize) {
    for (const int edge : {16, 22, 24, 32, 48, 64, 128, 256, 512}) {
        const QImage picture = applicationPicture(edge);
        EXPECT_EQ(picture.size(), QSize(edge, edge));
        EXPECT_EQ(picture.pixelColor(0, 0).alpha(), 0) << edge;
        EXPECT_EQ(picture.pixelColor(edge - 1, edge - 1).alpha(), 0) << edge;
        EXPECT_TRUE(isAmber(picture.pixelColor(edge / 2, edge / 8))) << edge;
        EXPECT_TRUE(isAmber(picture.pixelColor(edge / 2, edge - 1 - edge / 8))) << edge;
        EXPECT_TRUE(isAmber(picture.pixelColor(edge / 8, edge / 2))) << edge;
    }
}

TEST(ApplicationIcon, SmallSizesAreAlignedToPixels) {
    const QColor tile(QLatin1String("#fff4de"));
    struct Small {
        int edge;
        int first; // pixel of the first tile
        int tile;  // its pixels
    };
    for (const auto& [edge, first, size] : {Small{16, 3, 2}, Small{22, 3, 4}, Small{24, 4, 4}}) {
        const QImage picture = applicationPicture(edge);
        const int middle = first + size / 2;
        EXPECT_TRUE(isAmber(picture.pixelColor(first - 1, middle))) << edge;
        EXPECT_EQ(picture.pixelColor(first, middle).rgba(), tile.rgba()) << edge;
        EXPECT_EQ(picture.pixelColor(first + size - 1, middle).rgba(), tile.rgba()) << edge;
        EXPECT_TRUE(isAmber(picture.pixelColor(first + size, middle))) << edge;
    }
}

TEST(ApplicationIcon, HasTheSizesThatTaskBarsShow) {
    const auto sizes = applicationIcon().availableSizes();
    for (const int edge : {16, 22, 24, 32, 48, 64, 128}) {
        EXPECT_TRUE(sizes.contains(QSize(edge, edge))) << edge;
    }
}
