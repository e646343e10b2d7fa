#include "data/IconGlyph.h"

#include "data/IconCache.h"

#include <gtest/gtest.h>

using namespace amberquill;

TEST(IconGlyph, IsAnOpaqueTileWithAWindowOnItAtEverySize) {
    for (int edge = 16; edge <= 512; edge += 7) {
        const QImage glyph = paintedIconGlyph(edge);
        ASSERT_EQ(glyph.size(), QSize(edge, edge));
        EXPECT_EQ(glyph.format(), QImage::Format_ARGB32_Premultiplied);
        EXPECT_EQ(glyph.pixelColor(0, 0).alpha(), 0) << edge;
        bool isWhite = false;
        for (int y = 0; y < edge; ++y) {
            const QColor pixel = glyph.pixelColor(edge / 2, y);
            const bool isOnTile = y > edge * 0.2 && y < edge * 0.8;
            EXPECT_TRUE(!isOnTile || pixel.alpha() == 255) << edge << ", row " << y;
            isWhite = isWhite || pixel == QColor(Qt::white);
        }
        EXPECT_TRUE(isWhite) << edge;
    }
}

TEST(IconGlyph, ItsStraightEdgesLieBetweenPixels) {
    for (const int edge : {16, 32, 48, 75, 96, 120, 128, 256}) {
        const QImage glyph = paintedIconGlyph(edge);
        // Down right of the dots: tile or window, and nothing between the two.
        for (int y = 0; y < edge; ++y) {
            const QColor pixel = glyph.pixelColor(edge * 5 / 8, y);
            EXPECT_TRUE(pixel.alpha() == 0 || pixel.alpha() == 255) << edge << ", row " << y;
            EXPECT_TRUE(pixel == QColor(Qt::white) || pixel.blue() < 190) << edge << ", row " << y;
        }
    }
}

TEST(IconGlyph, IsNotWhatStandsInWhileAnIconIsDecoded) {
    IconCache cache;
    EXPECT_NE(paintedIconGlyph(64), cache.placeholder(64));
}
