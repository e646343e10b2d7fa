#include "model/DragRules.h"

#include "support/NumberedItems.h"

#include <gtest/gtest.h>
#include <limits>

using namespace amberquill;
using namespace Qt::StringLiterals;

namespace {

using Kind = DragIntent::Kind;

// Cells of 180 × 140 from (120, 120), icons of 92.8.
const GridMetrics grid{{1500, 892}, 7, 5};
const LaunchItem folder =
    LaunchItem::folder({QUuid(u"3F2504E0-4F89-11D3-9A0C-0305E82C3301"_s), u"Games"_s, {u"x"_s}});

// A grid with this raw icon size, by the cell's height.
GridMetrics gridWithIconOf(double size) {
    double height = size / 0.8 + 8;
    for (int round = 0; round < 50; ++round) { // the label's height depends on the cell's
        height = size / 0.8 + 8 + GridMetrics{{10'000, 192 + height}, 1, 1}.labelHeight();
    }
    return {{10'000, 192 + height}, 1, 1};
}

const DragStep nothing;
DragStep keepTarget() {
    DragStep step;
    step.cancelsPending = true;
    return step;
}
DragStep overNothing() {
    DragStep step = keepTarget();
    step.clearsTarget = true;
    return step;
}
DragStep startIntent(Kind kind, std::size_t place, const QString& key, double seconds) {
    DragStep step;
    step.clearsTarget = true;
    step.intent = DragIntent{kind, place, key, seconds};
    return step;
}

class PageDragRules : public testing::Test {
protected:
    DragStep at(const QPointF& pointer) { return pageDragStep(drag_, pointer); }
    static QPointF icon(int slot) { return iconCenter(grid, slot); }

    LaunchItems items_ = numberedApps(80);
    PageDrag drag_{items_, grid, 0, 3, false, {0, 0}, 10, {}, std::nullopt};
};

} // namespace

TEST(DragRadii, AreSharesOfTheRawIconSize) {
    EXPECT_NEAR(grid.rawIconSize(), 92.8, 1e-9);
    EXPECT_NEAR(mergeRadius(grid), 0.6 * 92.8, 1e-9);
    EXPECT_NEAR(holdRadius(grid), 0.85 * 92.8, 1e-9);
}

TEST(DragRadii, AreConstantForIconsBelowThirtySixPoints) {
    for (const double size : {1.0, 20.0, 35.9}) {
        ASSERT_NEAR(gridWithIconOf(size).rawIconSize(), size, 1e-6);
        EXPECT_EQ(mergeRadius(gridWithIconOf(size)), 21.6);
        EXPECT_EQ(holdRadius(gridWithIconOf(size)), 30.6);
    }
    EXPECT_EQ(mergeRadius({{0, 0}, 7, 5}), 21.6);
    EXPECT_NEAR(mergeRadius(gridWithIconOf(40)), 24, 1e-6);
    EXPECT_NEAR(holdRadius(gridWithIconOf(40)), 34, 1e-6);
}

TEST(DragRadii, AreConstantForIconsAbove128Points) {
    for (const double size : {128.1, 300.0}) {
        ASSERT_NEAR(gridWithIconOf(size).rawIconSize(), size, 1e-6);
        EXPECT_EQ(mergeRadius(gridWithIconOf(size)), 76.8);
        EXPECT_EQ(holdRadius(gridWithIconOf(size)), 108.8);
    }
    EXPECT_NEAR(mergeRadius(gridWithIconOf(120)), 72, 1e-6);
    EXPECT_NEAR(holdRadius(gridWithIconOf(120)), 102, 1e-6);
}

TEST(IconCenters, StandAboveTheirCellsByHalfOfLabelAndGap) {
    EXPECT_EQ(iconCenter(grid, 0), QPointF(210, 178));
    EXPECT_EQ(iconCenter(grid, 8), QPointF(390, 318));
    const FolderMetrics panel = FolderMetrics::of(40, grid);
    ASSERT_LT(panel.scale, 1);
    EXPECT_EQ(iconCenter(panel, 3), panel.cellCenter(3) - QPointF(0, panel.scale * 12));
}

TEST_F(PageDragRules, WithinFortyPointsOfAnEdgeThePageTurns) {
    drag_.page = 1;
    EXPECT_EQ(at({39.9, 400}), startIntent(Kind::FlipPage, 0, u"page:0"_s, 0.65));
    EXPECT_EQ(at({1460.1, 400}), startIntent(Kind::FlipPage, 2, u"page:2"_s, 0.65));
    EXPECT_EQ(at({-50, 400}).intent->key, u"page:0"_s);
}

TEST_F(PageDragRules, AtFortyPointsFromAnEdgeItDoesNot) {
    drag_.page = 1;
    EXPECT_EQ(at({40, 400}), overNothing());
    EXPECT_EQ(at({1460, 400}), overNothing());
}

TEST_F(PageDragRules, BeyondTheFirstAndTheLastPageNoPageIsTurned) {
    EXPECT_EQ(at({10, 400}), overNothing());
    drag_.page = 2;
    EXPECT_EQ(at({1490, 400}), overNothing());
}

TEST_F(PageDragRules, TheEdgeTurnsThePageEvenWithoutTheDraggedItem) {
    drag_.dragged.reset();
    EXPECT_EQ(at({1490, 400}).intent->kind, Kind::FlipPage);
    EXPECT_EQ(at(icon(3)), nothing);
}

TEST_F(PageDragRules, BesideTheGridThereIsNoIntent) {
    EXPECT_EQ(at({750, 100}), overNothing());
    EXPECT_EQ(at({100, 400}), overNothing());
}

TEST_F(PageDragRules, TheSlotIsThatOfTheFloatingIconsCell) {
    // The cell's centre is 12 points below the icon's.
    EXPECT_EQ(at({210, 107.9}), overNothing());
    EXPECT_TRUE(at({210, 108}).intent.has_value());
    drag_.grabOffset = {30, 50};
    EXPECT_EQ(at({240, 157.9}), overNothing());
    EXPECT_EQ(at(icon(10) + drag_.grabOffset), overNothing());
    EXPECT_EQ(at(icon(3) + drag_.grabOffset), startIntent(Kind::MarkTarget, 3, u"merge:a:3"_s, 0.18));
}

TEST_F(PageDragRules, OverItsOwnSlotThereIsNoIntent) {
    EXPECT_EQ(at(icon(10)), overNothing());
    EXPECT_EQ(at(icon(10) + QPointF(80, 50)), overNothing());
}

TEST_F(PageDragRules, CloserThanTheMergeRadiusAnAppMarksTheItemBelow) {
    const double radius = mergeRadius(grid);
    EXPECT_EQ(at(icon(3) + QPointF(radius - 0.01, 0)),
              startIntent(Kind::MarkTarget, 3, u"merge:a:3"_s, 0.18));
    EXPECT_EQ(at(icon(3) + QPointF(radius + 0.01, 0)), startIntent(Kind::Move, 3, u"move:3"_s, 0.35));
    EXPECT_EQ(at(icon(3) + QPointF(0, radius - 0.01)).intent->kind, Kind::MarkTarget);
    EXPECT_EQ(at(icon(3) + QPointF(0, radius + 0.01)).intent->kind, Kind::Move);
}

TEST_F(PageDragRules, AtTheMergeRadiusItMovesThere) {
    drag_.metrics = {{1500, 937}, 7, 5}; // cells of 180 × 149: all values are exact
    ASSERT_EQ(drag_.metrics.rawIconSize(), 100);
    ASSERT_EQ(mergeRadius(drag_.metrics), 60);
    const QPointF center = iconCenter(drag_.metrics, 0);
    const QPointF place(center.x() + 60, center.y());
    EXPECT_EQ(at(place).intent->kind, Kind::Move);
    const QPointF closer(std::nextafter(place.x(), 0), center.y());
    EXPECT_EQ(at(closer).intent->kind, Kind::MarkTarget);
}

TEST_F(PageDragRules, AnAppMarksAFolderToo) {
    items_[3] = folder;
    EXPECT_EQ(at(icon(3)),
              startIntent(Kind::MarkTarget, 3, u"merge:f:3F2504E0-4F89-11D3-9A0C-0305E82C3301"_s, 0.18));
}

TEST_F(PageDragRules, AFolderNeverMarksAnythingButMovesThere) {
    drag_.dragsFolder = true;
    EXPECT_EQ(at(icon(3)), startIntent(Kind::Move, 3, u"move:3"_s, 0.35));
}

TEST_F(PageDragRules, PlacesCountFromTheFirstPage) {
    drag_.page = 1;
    EXPECT_EQ(at(icon(3)).intent->key, u"merge:a:38"_s);
    EXPECT_EQ(at(icon(3) + QPointF(70, 0)).intent->key, u"move:38"_s);
}

TEST_F(PageDragRules, PastTheLastItemIsTheEnd) {
    drag_.page = 2; // items 70 … 79
    EXPECT_EQ(at(icon(10)), startIntent(Kind::Move, 79, u"move:79"_s, 0.3));
    EXPECT_EQ(at(icon(34)), startIntent(Kind::Move, 79, u"move:79"_s, 0.3));
}

TEST_F(PageDragRules, TheLastItemIsAtTheEndAlready) {
    drag_.page = 2;
    drag_.dragged = 79;
    EXPECT_EQ(at(icon(20)), overNothing());
}

TEST_F(PageDragRules, AMarkedTargetIsHeldWithinTheHoldRadius) {
    drag_.target = 3;
    const double radius = holdRadius(grid);
    EXPECT_EQ(at(icon(3)), keepTarget());
    EXPECT_EQ(at(icon(3) + QPointF(radius - 0.01, 0)), keepTarget());
    EXPECT_EQ(at(icon(3) - QPointF(0, radius - 0.01)), keepTarget()) << "above the grid, even";
    EXPECT_EQ(at(icon(3) + QPointF(radius + 0.01, 0)), startIntent(Kind::Move, 3, u"move:3"_s, 0.35));
}

TEST_F(PageDragRules, AMarkedTargetOfAnotherPageIsNotHeld) {
    drag_.target = 3;
    drag_.page = 1;
    EXPECT_EQ(at(icon(3)), startIntent(Kind::MarkTarget, 38, u"merge:a:38"_s, 0.18));
    drag_.target = 38;
    EXPECT_EQ(at(icon(3)), keepTarget());
}

TEST_F(PageDragRules, AtTheEdgeTheMarkedTargetIsCleared) {
    drag_.target = 0;
    const GridMetrics narrow{{400, 892}, 1, 5}; // 70 points of margin
    drag_.metrics = narrow;
    const QPointF beside(39, iconCenter(narrow, 0).y());
    drag_.page = 1;
    EXPECT_EQ(at(beside), startIntent(Kind::FlipPage, 0, u"page:0"_s, 0.65));
}

TEST_F(PageDragRules, AnEmptyLayoutHasNothingToDrag) {
    items_.clear();
    drag_.dragged.reset();
    EXPECT_EQ(at(icon(0)), nothing);
    EXPECT_EQ(groupCandidate(drag_, icon(0)), std::nullopt);
}

TEST_F(PageDragRules, ADropMergesWithAnItemCloserThanTheMergeRadius) {
    const double radius = mergeRadius(grid);
    EXPECT_EQ(groupCandidate(drag_, icon(3) + QPointF(radius - 0.01, 0)), u"a:3"_s);
    EXPECT_EQ(groupCandidate(drag_, icon(3) + QPointF(radius + 0.01, 0)), std::nullopt);
    drag_.page = 1;
    EXPECT_EQ(groupCandidate(drag_, icon(3)), u"a:38"_s);
}

TEST_F(PageDragRules, ADropOverItsOwnSlotTheEndOrNothingDoesNotMerge) {
    EXPECT_EQ(groupCandidate(drag_, icon(10)), std::nullopt);
    EXPECT_EQ(groupCandidate(drag_, {750, 60}), std::nullopt);
    drag_.page = 2;
    EXPECT_EQ(groupCandidate(drag_, icon(30)), std::nullopt);
}

TEST_F(PageDragRules, AFolderDroppedDoesNotMerge) {
    drag_.dragsFolder = true;
    EXPECT_EQ(groupCandidate(drag_, icon(3)), std::nullopt);
}

TEST_F(PageDragRules, InfiniteAndNaNPointsAreOutsideTheGrid) {
    const double infinity = std::numeric_limits<double>::infinity();
    const double none = std::numeric_limits<double>::quiet_NaN();
    EXPECT_EQ(at({none, none}), overNothing());
    EXPECT_EQ(at({750, infinity}), overNothing());
    EXPECT_EQ(at({-infinity, 0}), overNothing());
    EXPECT_EQ(groupCandidate(drag_, {none, 0}), std::nullopt);
}

namespace {

// Nine applications in two rows of seven columns at full size, the cells from (120, 271).
class FolderDragRules : public testing::Test {
protected:
    DragStep at(const QPointF& pointer, std::optional<std::size_t> index = 4) {
        return folderDragStep(panel_, 9, index, pointer);
    }
    static DragStep moveInFolderTo(std::size_t place, const QString& key) {
        DragStep step;
        step.intent = DragIntent{Kind::MoveInFolder, place, key, 0.12};
        return step;
    }

    const FolderMetrics panel_ = FolderMetrics::of(9, grid);
};

} // namespace

TEST_F(FolderDragRules, ThePointerOverAnotherCellMovesThereAfterARest) {
    EXPECT_EQ(at(panel_.cellCenter(2)), moveInFolderTo(2, u"folder:2"_s));
    EXPECT_EQ(at(panel_.cellCenter(8)), moveInFolderTo(8, u"folder:8"_s));
}

TEST_F(FolderDragRules, OverItsOwnCellThereIsNoIntent) {
    EXPECT_EQ(at(panel_.cellCenter(4)), keepTarget());
}

TEST_F(FolderDragRules, CellsPastTheLastAppAreTheLastApps) {
    EXPECT_EQ(at(panel_.cellCenter(12)), moveInFolderTo(8, u"folder:8"_s));
    EXPECT_EQ(at(panel_.cellCenter(12), 8), keepTarget());
}

TEST_F(FolderDragRules, TwelvePointsAboveAndBelowTheCellsBelongToTheirRows) {
    const QRectF area = panel_.cellArea();
    EXPECT_EQ(at({panel_.cellCenter(2).x(), area.top() - 11}), moveInFolderTo(2, u"folder:2"_s));
    EXPECT_EQ(at({panel_.cellCenter(0).x(), area.bottom() + 11}), moveInFolderTo(7, u"folder:7"_s));
    EXPECT_EQ(at({panel_.cellCenter(2).x(), area.top() - 13}), nothing);
    EXPECT_EQ(at({panel_.cellCenter(0).x(), area.bottom() + 13}), nothing);
    EXPECT_EQ(at({area.left() - 5, panel_.cellCenter(0).y()}), nothing) << "the panel's padding";
}

TEST_F(FolderDragRules, OnlyBeyondTwentyPointsOutsideThePanelTheAppLeavesIt) {
    DragStep out = keepTarget();
    out.pullsOut = true;
    const QRectF rect = panel_.panelRect;
    const QPointF middle = rect.center();
    EXPECT_EQ(at({rect.left() - 20, middle.y()}), nothing);
    EXPECT_EQ(at({rect.left() - 20.01, middle.y()}), out);
    EXPECT_EQ(at({middle.x(), rect.top() - 20}), nothing);
    EXPECT_EQ(at({middle.x(), rect.top() - 20.01}), out);
    EXPECT_EQ(at({rect.right() + 19.99, middle.y()}), nothing);
    EXPECT_EQ(at({rect.right() + 20, middle.y()}), out);
    EXPECT_EQ(at({middle.x(), rect.bottom() + 19.99}), nothing);
    EXPECT_EQ(at({middle.x(), rect.bottom() + 20}), out);
}

TEST_F(FolderDragRules, AnAppThatIsGoneMovesNowhere) {
    EXPECT_EQ(at(panel_.cellCenter(2), std::nullopt), nothing);
}
