#include "data/GridMetrics.h"

#include <gtest/gtest.h>

using namespace amberquill;

namespace {

// A page whose cells have exactly this size.
GridMetrics pageOfCells(double cellWidth, double cellHeight, int columns = 7, int rows = 5) {
    // The margin is 70 up to a width of 875, then 8 %.
    const double grid = cellWidth * columns;
    const double width = grid <= 735 ? grid + 140 : grid / 0.84;
    return {{width, cellHeight * rows + 192}, columns, rows};
}

} // namespace

TEST(GridMetrics, TheMarginIsEightPercentOfTheWidthButAtLeastSeventy) {
    EXPECT_EQ((GridMetrics{{800, 600}, 7, 5}.gridRect()), QRectF(70, 120, 660, 408));
    EXPECT_EQ((GridMetrics{{1500, 900}, 7, 5}.gridRect()), QRectF(120, 120, 1260, 708));
}

TEST(GridMetrics, TheGridIsNeverEmpty) {
    EXPECT_EQ((GridMetrics{{800, 150}, 7, 5}.gridRect().height()), 1);
    EXPECT_EQ((GridMetrics{{100, 150}, 7, 5}.gridRect().width()), 1);
    EXPECT_EQ((GridMetrics{{0, 0}, 7, 5}.gridRect()), QRectF(70, 120, 1, 1));
}

TEST(GridMetrics, CellsDivideTheGridWithoutRounding) {
    const GridMetrics metrics{{1920, 1080}, 7, 5};
    EXPECT_DOUBLE_EQ(metrics.cellSize().width(), 1612.8 / 7);
    EXPECT_DOUBLE_EQ(metrics.cellSize().height(), 888.0 / 5);
}

TEST(GridMetrics, SlotsCountRowByRow) {
    const GridMetrics metrics{{1500, 892}, 7, 5}; // cells of 180 × 140 from (120, 120)
    EXPECT_EQ(metrics.cellCenter(0), QPointF(210, 190));
    EXPECT_EQ(metrics.cellCenter(6), QPointF(1290, 190));
    EXPECT_EQ(metrics.cellCenter(7), QPointF(210, 330));
    EXPECT_EQ(metrics.cellCenter(34), QPointF(1290, 750));
}

TEST(GridMetrics, ASlotBeyondTheLastCellIsBelowTheGrid) {
    const GridMetrics metrics{{1500, 892}, 7, 5};
    EXPECT_EQ(metrics.cellCenter(35), QPointF(210, 890));
    EXPECT_EQ(metrics.slotAt(metrics.cellCenter(35)), std::nullopt);
}

TEST(GridMetrics, OnlyTheLeftAndTopEdgesBelongToTheGrid) {
    const GridMetrics metrics{{1500, 892}, 7, 5};
    EXPECT_EQ(metrics.slotAt({120, 120}), 0);
    EXPECT_EQ(metrics.slotAt({119.999, 120}), std::nullopt);
    EXPECT_EQ(metrics.slotAt({120, 119.999}), std::nullopt);
    EXPECT_EQ(metrics.slotAt({1380, 300}), std::nullopt);
    EXPECT_EQ(metrics.slotAt({300, 820}), std::nullopt);
    EXPECT_EQ(metrics.slotAt({1379.999, 819.999}), 34);
}

TEST(GridMetrics, EverySlotIsFoundAtItsCentre) {
    const GridMetrics metrics{{1283, 797}, 9, 6};
    for (int slot = 0; slot < metrics.slotsPerPage(); ++slot) {
        EXPECT_EQ(metrics.slotAt(metrics.cellCenter(slot)), slot);
    }
}

TEST(GridMetrics, ACellOfAHundredHasTheSmallestLabel) {
    const GridMetrics metrics = pageOfCells(80, 100);
    EXPECT_DOUBLE_EQ(metrics.labelFontSize(), 11);
    EXPECT_DOUBLE_EQ(metrics.labelHeight(), 16);
    EXPECT_NEAR(metrics.iconSize(), 0.62 * 80, 1e-9);
    EXPECT_NEAR(pageOfCells(105, 100).iconSize(), 60.8, 1e-9);
    EXPECT_NEAR(pageOfCells(20, 100).iconSize(), 36, 1e-9);
    EXPECT_DOUBLE_EQ(metrics.iconRise(), 12);
}

TEST(GridMetrics, ACellOfThreeHundredHasTheLargestLabelAndIcon) {
    const GridMetrics metrics = pageOfCells(300, 300);
    EXPECT_DOUBLE_EQ(metrics.labelFontSize(), 14);
    EXPECT_DOUBLE_EQ(metrics.labelHeight(), 20);
    EXPECT_DOUBLE_EQ(metrics.iconSize(), 128);
    EXPECT_DOUBLE_EQ(metrics.tileRect({0, 0}).width(), 156);
    EXPECT_NEAR(pageOfCells(100, 300).tileRect({0, 0}).width(), 36 + 64 - 10.0, 1e-9);
}

TEST(GridMetrics, TheTileIsAroundItsCentre) {
    const GridMetrics metrics = pageOfCells(300, 300);
    EXPECT_EQ(metrics.tileRect({500, 400}), QRectF(500 - 78, 400 - 78, 156, 156));
}

TEST(GridMetrics, ATileIsNeverWiderThanItsCell) {
    const GridMetrics metrics = pageOfCells(50, 300);
    EXPECT_NEAR(metrics.tileRect({0, 0}).width(), 50, 1e-9);
}

TEST(GridMetrics, AFullHdPageOfSevenByFive) {
    const GridMetrics metrics{{1920, 1080}, 7, 5};
    EXPECT_NEAR(metrics.labelFontSize(), 13.32, 1e-9);
    EXPECT_NEAR(metrics.labelHeight(), 19, 1e-9);
    EXPECT_NEAR(metrics.iconSize(), 120.48, 1e-9);
}
