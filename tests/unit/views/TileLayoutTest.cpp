#include "views/TileRows.h"

#include <cmath>
#include <gtest/gtest.h>

using namespace amberquill;

namespace {

bool isWholePixel(double value, double ratio) {
    return std::abs(value * ratio - std::round(value * ratio)) < 1e-6;
}

} // namespace

TEST(TileLayout, EveryPartLiesOnDevicePixelsWithinHalfAPixelOfItsPlace) {
    for (const QSizeF size : {QSizeF(1920, 1080), QSizeF(1280, 800), QSizeF(2560, 1440), QSizeF(1367, 769)}) {
        for (const double ratio : {1.0, 1.25, 1.5, 2.0, 3.0}) {
            const GridMetrics metrics{size, 7, 5};
            const TileLayout layout = TileLayout::of(metrics, ratio);
            for (const double value : {layout.icon.x(), layout.icon.y(), layout.icon.width(),
                                       layout.label.x(), layout.label.y(), layout.label.width()}) {
                EXPECT_TRUE(isWholePixel(value, ratio)) << value << " at " << ratio;
            }
            const double half = 0.5 / ratio + 1e-9;
            EXPECT_NEAR(layout.icon.width(), metrics.iconSize(), half);
            EXPECT_NEAR(layout.label.y(), metrics.iconSize() + 8, half);
            EXPECT_NEAR(layout.label.width(), metrics.cellSize().width() - 8, half);
            EXPECT_NEAR(layout.icon.center().x(), metrics.tileRect({0, 0}).width() / 2, 2 * half);
            EXPECT_NEAR(layout.label.center().x(), layout.icon.center().x(), 2 * half);
            EXPECT_EQ(layout.label.height(), metrics.labelHeight());
        }
    }
}
