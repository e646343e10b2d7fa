#include "data/PaintedIcons.h"

#include <gtest/gtest.h>

using namespace amberquill;

TEST(GenericIcon, IsAnOpaqueTileWithAWindowAtEverySize) {
    for (int edge = 16; edge <= 512; edge += 7) {
        const QImage icon = paintedGenericIcon(edge);
        ASSERT_EQ(icon.size(), QSize(edge, edge));
        EXPECT_EQ(icon.format(), QImage::Format_ARGB32_Premultiplied);
        EXPECT_EQ(icon.pixelColor(0, 0).alpha(), 0) << edge;
        bool isWhite = false;
        for (int y = 0; y < edge; ++y) {
            const QColor pixel = icon.pixelColor(edge / 2, y);
            const bool isOnTile = y > edge * 0.2 && y < edge * 0.8;
            EXPECT_TRUE(!isOnTile || pixel.alpha() == 255) << edge << ", row " << y;
            isWhite = isWhite || pixel == QColor(Qt::white);
        }
        EXPECT_TRUE(isWhite) << edge;
    }
}

TEST(GenericIcon, ItsStraightEdgesLieBetweenPixels) {
    for (const int edge : {16, 32, 48, 75, 96, 120, 128, 256}) {
        const QImage icon = paintedGenericIcon(edge);
        // Right of the dots every pixel belongs to the tile or to the window, without a mixed colour.
        for (int y = 0; y < edge; ++y) {
            const QColor pixel = icon.pixelColor(edge * 5 / 8, y);
            EXPECT_TRUE(pixel.alpha() == 0 || pixel.alpha() == 255) << edge << ", row " << y;
            EXPECT_TRUE(pixel == QColor(Qt::white) || pixel.blue() < 190) << edge << ", row " << y;
        }
    }
}

TEST(GenericIcon, DiffersFromThePlaceholder) {
    EXPECT_NE(paintedGenericIcon(64), paintedPlaceholder(64));
}
