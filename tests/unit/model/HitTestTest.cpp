#include "model/HitTest.h"

#include "data/FolderMetrics.h"

#include "support/NumberedItems.h"

#include <gtest/gtest.h>

using namespace amberquill;
using namespace Qt::StringLiterals;

namespace {

const GridMetrics metrics{{1500, 892}, 7, 5}; // cells of 180 × 140 from (120, 120)

Hit hit(const QPointF& point, int count, int page = 0, double scrollOffset = 0,
        const Folder* folder = nullptr) {
    const LaunchItems items = numberedApps(count);
    return hitTest(point, {items, metrics, page, scrollOffset}, folder);
}

Hit item(int index) {
    return {Hit::GridItem{u"a:%1"_s.arg(index)}};
}

const Hit empty{Hit::Empty{}};

} // namespace

TEST(HitTest, ATileIsHitOnItsPage) {
    EXPECT_EQ(hit(metrics.cellCenter(0), 80), item(0));
    EXPECT_EQ(hit(metrics.cellCenter(8), 80), item(8));
    EXPECT_EQ(hit(metrics.cellCenter(8), 80, 1), item(43));
}

TEST(HitTest, TheMarginOfACellIsEmpty) {
    const QRectF tile = metrics.tileRect(metrics.cellCenter(3));
    EXPECT_EQ(hit(tile.topLeft(), 80), item(3));
    EXPECT_EQ(hit(tile.topLeft() - QPointF(0.01, 0), 80), empty);
    EXPECT_EQ(hit({tile.right(), tile.center().y()}, 80), empty);
    EXPECT_EQ(hit({tile.center().x(), tile.bottom()}, 80), empty);
    EXPECT_EQ(hit({tile.center().x(), tile.bottom() - 0.01}, 80), item(3));
}

TEST(HitTest, ASlotPastTheLastItemIsEmpty) {
    EXPECT_EQ(hit(metrics.cellCenter(2), 2), empty);
    EXPECT_EQ(hit(metrics.cellCenter(2), 37, 1), empty);
    EXPECT_EQ(hit(metrics.cellCenter(1), 37, 1), item(36));
}

TEST(HitTest, OutsideTheGridIsEmpty) {
    EXPECT_EQ(hit({10, 10}, 80), empty);
    EXPECT_EQ(hit({750, 880}, 80), empty);
}

TEST(HitTest, ThePagesAreHitWhereTheyAreShiftedTo) {
    EXPECT_EQ(hit(metrics.cellCenter(3) + QPointF(-90, 0), 80, 0, -90), item(3));
    EXPECT_EQ(hit(metrics.cellCenter(3), 80, 0, -90), empty);
}

TEST(HitTest, AnOpenFolderHidesThePageBeneath) {
    const Folder folder{QUuid::createUuid(), u"F"_s, {u"/x"_s, u"/y"_s}};
    const FolderMetrics panel = FolderMetrics::of(2, metrics);
    EXPECT_EQ(hit(panel.cellCenter(0), 80, 0, 0, &folder), (Hit{Hit::FolderItem{u"/x"_s}}));
    EXPECT_EQ(hit(panel.cellCenter(1), 80, 0, 0, &folder), (Hit{Hit::FolderItem{u"/y"_s}}));
    EXPECT_EQ(hit(panel.cellCenter(2), 80, 0, 0, &folder), (Hit{Hit::FolderPanel{}}));
    EXPECT_EQ(hit(panel.panelRect.topLeft() + QPointF(5, 5), 80, 0, 0, &folder), (Hit{Hit::FolderPanel{}}));
    EXPECT_EQ(hit(metrics.cellCenter(0), 80, 0, 0, &folder), (Hit{Hit::OutsideFolder{}}));
    EXPECT_EQ(hit({panel.panelRect.right(), panel.panelRect.center().y()}, 80, 0, 0, &folder),
              (Hit{Hit::OutsideFolder{}}));
}

TEST(HitTest, AShrunkFoldersTilesAreHitAtTheirShrunkSize) {
    Folder folder{QUuid::createUuid(), u"F"_s, {}};
    for (int i = 0; i < 60; ++i) {
        folder.apps.append(QString::number(i));
    }
    const FolderMetrics panel = FolderMetrics::of(60, metrics);
    ASSERT_LT(panel.scale, 1);
    const QRectF tile = metrics.tileRect({0, 0});
    const QPointF centre = panel.cellCenter(30);
    const QPointF inside(tile.width() / 2 * panel.scale - 0.1, 0);
    EXPECT_EQ(hit(centre + inside, 80, 0, 0, &folder), (Hit{Hit::FolderItem{u"30"_s}}));
    EXPECT_EQ(hit(centre + inside + QPointF(0.2, 0), 80, 0, 0, &folder), (Hit{Hit::FolderPanel{}}));
}
