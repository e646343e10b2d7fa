#include "data/FolderMetrics.h"

#include <gtest/gtest.h>

using namespace amberquill;

namespace {

const GridMetrics fullHd{{1920, 1080}, 7, 5};

} // namespace

TEST(FolderMetrics, AFolderOfOneHasFourColumns) {
    const FolderMetrics metrics = FolderMetrics::of(1, fullHd);
    EXPECT_EQ(metrics.columns, 4);
    EXPECT_EQ(metrics.rows, 1);
    EXPECT_EQ(metrics.scale, 1);
    EXPECT_EQ(metrics.cellSize, fullHd.cellSize());
}

TEST(FolderMetrics, OnANarrowPageAFolderHasThePagesColumns) {
    EXPECT_EQ(FolderMetrics::of(1, {{1920, 1080}, 3, 5}).columns, 3);
}

TEST(FolderMetrics, AnEmptyFolderHasOneRow) {
    const FolderMetrics metrics = FolderMetrics::of(0, fullHd);
    EXPECT_EQ(metrics.rows, 1);
    EXPECT_EQ(metrics.columns, 4);
}

TEST(FolderMetrics, ThePanelHasATitleCellsAndInsetsTenBelowTheCentre) {
    const FolderMetrics metrics = FolderMetrics::of(6, fullHd);
    EXPECT_EQ(metrics.columns, 6);
    const double width = metrics.cellSize.width() * 6 + 56;
    const double height = metrics.cellSize.height() + 98;
    EXPECT_DOUBLE_EQ(metrics.panelRect.width(), width);
    EXPECT_DOUBLE_EQ(metrics.panelRect.height(), height);
    EXPECT_DOUBLE_EQ(metrics.panelRect.center().x(), 960);
    EXPECT_DOUBLE_EQ(metrics.panelRect.center().y(), 550);
    EXPECT_DOUBLE_EQ(metrics.cellCenter(0).x(), metrics.panelRect.left() + 28 + metrics.cellSize.width() / 2);
    EXPECT_DOUBLE_EQ(metrics.cellCenter(0).y(), metrics.panelRect.top() + 70 + metrics.cellSize.height() / 2);
}

TEST(FolderMetrics, MoreColumnsNeedALargerScale) {
    // Forty on a small screen: seven columns would need six rows.
    const GridMetrics small{{1280, 800}, 7, 5};
    const FolderMetrics metrics = FolderMetrics::of(40, small);
    double best = 0;
    for (int columns = 7; columns <= 13; ++columns) {
        const int rows = (40 + columns - 1) / columns;
        best = std::max(best, std::min((1280 - 176) / (small.cellSize().width() * columns),
                                       (800 - 278) / (small.cellSize().height() * rows)));
    }
    EXPECT_NEAR(metrics.scale, best, 0.001);
    EXPECT_GT(metrics.columns, 7);
    EXPECT_LE(metrics.columns, 13);
    EXPECT_LT(metrics.scale, 1);
}

TEST(FolderMetrics, AScaleLargerByLessThanAThousandthDoesNotCount) {
    EXPECT_EQ(FolderMetrics::of(46, {{2560, 1440}, 7, 5}).columns, 8) << "ten are 0.0001 better";
    EXPECT_EQ(FolderMetrics::of(85, {{1366, 768}, 8, 6}).columns, 11) << "thirteen are 0.0002 better";
    const FolderMetrics nearlyFull = FolderMetrics::of(37, {{2560, 621}, 12, 5});
    EXPECT_EQ(nearlyFull.columns, 12) << "thirteen fit at full size";
    EXPECT_NEAR(nearlyFull.scale, 0.9994, 0.0001);
}

TEST(FolderMetrics, AFolderHasAtMostSixColumnsMoreThanThePage) {
    EXPECT_EQ(FolderMetrics::of(71, {{1920, 1080}, 5, 4}).columns, 11);
    EXPECT_EQ(FolderMetrics::of(89, {{1920, 1080}, 5, 4}).columns, 10) << "twelve would be larger";
}

TEST(FolderMetrics, SixtyPointsAreFreeOnEachSideOfThePanel) {
    const FolderMetrics metrics = FolderMetrics::of(7, {{1024, 900}, 7, 5});
    EXPECT_LT(metrics.scale, 1);
    EXPECT_DOUBLE_EQ(metrics.panelRect.left(), 60);
    EXPECT_DOUBLE_EQ(metrics.panelRect.right(), 964);
}

TEST(FolderMetrics, TheScaleNeverDropsBelowThreeTenths) {
    const FolderMetrics metrics = FolderMetrics::of(2000, fullHd);
    EXPECT_EQ(metrics.scale, 0.3);
    EXPECT_GT(metrics.panelRect.height(), fullHd.size.height());
}

TEST(FolderMetrics, SlotsReachTwelvePointsAboveAndBelowTheCells) {
    const FolderMetrics metrics = FolderMetrics::of(9, fullHd);
    const QRectF area = metrics.cellArea();
    EXPECT_EQ(metrics.slotAt({area.left() + 1, area.top() - 10}), 0);
    EXPECT_EQ(metrics.slotAt({area.left() + 1, area.top() - 13}), std::nullopt);
    EXPECT_EQ(metrics.slotAt({area.left() + 1, area.bottom() + 11}), metrics.columns * (metrics.rows - 1));
    EXPECT_EQ(metrics.slotAt({area.left() + 1, area.bottom() + 12}), std::nullopt);
    EXPECT_EQ(metrics.slotAt({area.left() - 1, area.top() + 1}), std::nullopt);
    EXPECT_EQ(metrics.slotAt({area.right(), area.top() + 1}), std::nullopt);
}

TEST(FolderMetrics, ASlotMayBeBeyondTheLastApplication) {
    const FolderMetrics metrics = FolderMetrics::of(8, fullHd); // 7 + 1
    ASSERT_EQ(metrics.columns, 7);
    ASSERT_EQ(metrics.rows, 2);
    EXPECT_EQ(metrics.slotAt(metrics.cellCenter(13)), 13);
}

TEST(FolderMetrics, EveryIndexIsFoundAtItsCentre) {
    for (const int count : {1, 4, 7, 8, 20, 35, 60}) {
        const FolderMetrics metrics = FolderMetrics::of(count, {{1280, 800}, 7, 5});
        for (int index = 0; index < count; ++index) {
            EXPECT_EQ(metrics.slotAt(metrics.cellCenter(index)), index) << count;
        }
    }
}
