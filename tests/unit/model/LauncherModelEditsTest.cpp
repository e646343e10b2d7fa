#include "support/DragFixture.h"

#include <QSignalSpy>

using namespace amberquill;
using namespace Qt::StringLiterals;

namespace {

class LauncherModelFolderDrag : public DragFixture {
protected:
    LauncherModel& opened(const LaunchItems& items) {
        LauncherModel& model = shownAs(items);
        model.openFolder(gamesID);
        return model;
    }
    // Presses the middle of the application's tile in the panel and moves on.
    void liftFromFolder(int index) { lift(panel().cellCenter(index)); }
    [[nodiscard]] QPointF outside() const { return panel().panelRect.topLeft() - QPointF(30, 30); }
};

using LauncherModelEdits = DragFixture;

} // namespace

// --- Inside the panel

TEST_F(LauncherModelFolderDrag, AnAppOfTheOpenFolderIsDraggedAsThatApp) {
    LauncherModel& model = opened({app(1), games({2, 3, 4})});
    const FolderMetrics metrics = panel();
    const QPointF icon = metrics.cellCenter(1) - QPointF(0, metrics.scale * 12);
    lift(icon + QPointF(3, 4));
    ASSERT_TRUE(isDragging());
    EXPECT_EQ(*model.drag(), (DragInfo{id(3), app(3), gamesID, {3, 4}, false}));
    EXPECT_EQ(model.pressedID(), QString());
}

TEST_F(LauncherModelFolderDrag, TheGrabOffsetFollowsThePanelsScale) {
    std::vector<int> many;
    for (int number = 1; number <= 120; ++number) {
        many.push_back(number);
    }
    LauncherModel& model = opened({games(many)});
    const FolderMetrics metrics = panel();
    ASSERT_LT(metrics.scale, 0.9);
    lift(metrics.cellCenter(50));
    ASSERT_TRUE(isDragging());
    EXPECT_NEAR(model.drag()->grabOffset.x(), 0, 1e-9);
    EXPECT_NEAR(model.drag()->grabOffset.y(), metrics.scale * 12, 1e-9);
}

TEST_F(LauncherModelFolderDrag, ThePanelItselfIsNotDragged) {
    opened({app(1), games({2, 3, 4})});
    lift(panel().panelRect.topLeft() + QPointF(5, 5));
    EXPECT_FALSE(isDragging());
    drop();
    lift(outside());
    EXPECT_FALSE(isDragging());
    drop();
    EXPECT_TRUE(model_->folderIsOpen()) << "neither was a tap";
}

TEST_F(LauncherModelFolderDrag, OverAnotherCellItMovesThereAfterAHundredAndTwentyMilliseconds) {
    LauncherModel& model = opened({app(1), games({2, 3, 4, 5})});
    liftFromFolder(0);
    const Carried carried(model, &LauncherModel::itemsChanged);
    pointTo(panel().cellCenter(2));
    EXPECT_EQ(model.pendingKey(), u"folder:2"_s);
    wait(0.119);
    EXPECT_EQ(order(), "1 [2 3 4 5]");
    wait(0.001);
    EXPECT_EQ(order(), "1 [3 4 2 5]");
    EXPECT_EQ(carried.animation(), spring(0.32, 0.82));
    EXPECT_TRUE(model.folderIsOpen());
    pointTo(panel().cellCenter(2) + QPointF(1, 0));
    EXPECT_EQ(model.pendingKey(), QString());
}

TEST_F(LauncherModelFolderDrag, MovesOverACellKeepTheTimer) {
    LauncherModel& model = opened({app(1), games({2, 3, 4, 5})});
    liftFromFolder(0);
    pointTo(panel().cellCenter(2));
    wait(0.1);
    pointTo(panel().cellCenter(2) + QPointF(4, 4));
    wait(0.019);
    EXPECT_EQ(order(), "1 [2 3 4 5]");
    wait(0.001);
    EXPECT_EQ(order(), "1 [3 4 2 5]");
    pointTo(panel().cellCenter(0));
    wait(0.1);
    pointTo(panel().cellCenter(1));
    EXPECT_EQ(model.pendingKey(), u"folder:1"_s);
    wait(0.119);
    EXPECT_EQ(order(), "1 [3 4 2 5]");
}

TEST_F(LauncherModelFolderDrag, CellsPastTheLastAppMoveToItsPlace) {
    LauncherModel& model = opened({games({1, 2, 3, 4, 5, 6, 7, 8, 9})}); // seven in a row
    ASSERT_EQ(panel().rows, 2);
    liftFromFolder(0);
    pointTo(panel().cellCenter(12));
    EXPECT_EQ(model.pendingKey(), u"folder:8"_s);
    wait(0.12);
    EXPECT_EQ(order(), "[2 3 4 5 6 7 8 9 1]");
}

TEST_F(LauncherModelFolderDrag, ReorderingAFolderIsSavedAtTheDrop) {
    LauncherModel& model = opened({app(1), games({2, 3, 4, 5})});
    const int writes = files_.writes();
    const int saves = files_.writesOf(layoutPath);
    liftFromFolder(0);
    pointTo(panel().cellCenter(2));
    wait(0.12);
    EXPECT_EQ(files_.writes(), writes);
    drop();
    EXPECT_EQ(onDisk(), encodeItems(model.items()));
    EXPECT_EQ(files_.writesOf(layoutPath), saves + 1);
}

TEST_F(LauncherModelFolderDrag, AReleasedIconGlidesIntoItsCell) {
    LauncherModel& model = opened({app(1), games({2, 3, 4, 5})});
    liftFromFolder(0);
    const QPointF offset = model.drag()->grabOffset;
    pointTo(panel().cellCenter(2));
    wait(0.12);
    pointTo(panel().cellCenter(3));
    drop();
    const FolderMetrics metrics = panel();
    ASSERT_TRUE(isDragging());
    EXPECT_TRUE(model.drag()->dropping);
    EXPECT_EQ(model.tracker()->location(), metrics.cellCenter(2) - QPointF(0, metrics.scale * 12) + offset);
    wait(0.189);
    EXPECT_TRUE(isDragging());
    wait(0.001);
    EXPECT_FALSE(isDragging());
    EXPECT_EQ(order(), "1 [3 4 2 5]");
    EXPECT_TRUE(model.folderIsOpen());
}

TEST_F(LauncherModelFolderDrag, ADropInAFolderNeverMerges) {
    LaunchItems items = appsTo(35);
    items.insert(items.begin(), games({36, 37, 38, 39}));
    LauncherModel& model = opened(items);
    liftFromFolder(0);
    pointTo(iconAt(17));
    ASSERT_TRUE(holds(panel().panelRect, pointer_));
    drop();
    wait(1);
    EXPECT_EQ(model.items().size(), 36U);
}

TEST_F(LauncherModelFolderDrag, AFolderClosedDuringTheDragKeepsTheApp) {
    LauncherModel& model = opened({app(1), games({2, 3, 4, 5})});
    liftFromFolder(0);
    pointTo(panel().cellCenter(2));
    model.closeFolder();
    wait(0.12);
    EXPECT_EQ(order(), "1 [3 4 2 5]");
    drop();
    wait(0.19);
    EXPECT_FALSE(isDragging());
    EXPECT_EQ(onDisk(), encodeItems(model.items()));
}

TEST_F(LauncherModelFolderDrag, AFolderThatIsGoneEndsTheDragAtTheDropWithoutAGlide) {
    LauncherModel& model = opened({app(1), games({2, 3})});
    liftFromFolder(0);
    pointTo(panel().cellCenter(1));
    ASSERT_EQ(model.pendingKey(), u"folder:1"_s);
    model.pullOut(path(3), gamesID); // the folder dissolves
    ASSERT_EQ(order(), "1 2 3");
    wait(0.12);
    EXPECT_EQ(order(), "1 2 3");
    EXPECT_EQ(queue_.timers(), 0U);
    drop();
    wait(0.19);
    EXPECT_FALSE(isDragging());
    EXPECT_EQ(onDisk(), encodeItems(model.items()));
    EXPECT_EQ(order(), "1 2 3");
}

TEST_F(LauncherModelFolderDrag, ACancelledDragInAFolderEndsAndSaves) {
    LauncherModel& model = opened({app(1), games({2, 3, 4, 5})});
    liftFromFolder(0);
    pointTo(panel().cellCenter(2));
    wait(0.12);
    pointTo(panel().cellCenter(3));
    model.pointerCancelled();
    EXPECT_FALSE(isDragging());
    EXPECT_EQ(queue_.timers(), 0U);
    EXPECT_EQ(onDisk(), encodeItems({app(1), games({3, 4, 2, 5})}));
    EXPECT_TRUE(model.folderIsOpen());
}

// --- Out of the panel

TEST_F(LauncherModelFolderDrag, WithinTwentyPointsOfThePanelNothingIsPulledOut) {
    LauncherModel& model = opened({app(1), games({2, 3, 4})});
    liftFromFolder(0);
    const QRectF rect = panel().panelRect;
    pointTo({rect.center().x(), rect.top() - 20});
    EXPECT_TRUE(model.folderIsOpen());
    pointTo({rect.center().x(), rect.bottom() + 19.9});
    EXPECT_TRUE(model.folderIsOpen());
    EXPECT_EQ(model.drag()->fromFolder, gamesID);
    EXPECT_EQ(order(), "1 [2 3 4]");
}

TEST_F(LauncherModelFolderDrag, BeyondTwentyPointsTheAppIsPulledOutAndTheDragContinues) {
    LauncherModel& model = opened({app(1), games({2, 3, 4}), app(5)});
    const int writes = files_.writes();
    liftFromFolder(1);
    const QPointF offset = model.drag()->grabOffset;
    pointTo(panel().cellCenter(0));
    ASSERT_EQ(model.pendingKey(), u"folder:0"_s);
    const Carried items(model, &LauncherModel::itemsChanged);
    const Carried open(model, &LauncherModel::openFolderIDChanged);
    const Carried drag(model, &LauncherModel::dragChanged);
    const QRectF rect = panel().panelRect;
    const int edits = controller_->editingEnded;
    const int token = model.focusSearchToken();
    pointTo({rect.center().x(), rect.top() - 20.1});
    EXPECT_EQ(order(), "1 [2 4] 3 5");
    EXPECT_FALSE(model.openFolderID().has_value());
    EXPECT_EQ(*model.drag(), (DragInfo{id(3), app(3), std::nullopt, offset, false}));
    EXPECT_EQ(model.pendingKey(), QString());
    EXPECT_EQ(items.animation(), spring(0.35, 0.85));
    EXPECT_EQ(open.animation(), spring(0.35, 0.85));
    EXPECT_EQ(drag.animation(), spring(0.35, 0.85));
    EXPECT_EQ(controller_->editingEnded, edits + 1);
    EXPECT_EQ(model.focusSearchToken(), token);
    queue_.runPosted();
    EXPECT_EQ(files_.writes(), writes) << "the drag's end saves";

    pointTo(iconAt(0) + QPointF(70, 0) + offset);
    EXPECT_EQ(model.pendingKey(), u"move:0"_s);
    wait(0.35);
    EXPECT_EQ(order(), "3 1 [2 4] 5");
    drop();
    wait(0.19);
    EXPECT_FALSE(isDragging());
    EXPECT_EQ(onDisk(), encodeItems(model.items()));
}

TEST_F(LauncherModelFolderDrag, AFirstMoveBeyondThePanelIsAlsoAMoveOnThePage) {
    LauncherModel& model = opened({app(1), games({2, 3, 4}), app(5)});
    start_ = panel().cellCenter(1);
    press(start_);
    pointTo(iconAt(0) + QPointF(70, 12));
    EXPECT_EQ(order(), "1 [2 4] 3 5");
    EXPECT_EQ(model.drag()->fromFolder, std::nullopt);
    EXPECT_EQ(model.pendingKey(), u"move:0"_s);
}

TEST_F(LauncherModelFolderDrag, TheLastButOneAppOutOfAFolderLeavesTheOtherInItsPlace) {
    opened({app(1), games({2, 3}), app(4)});
    liftFromFolder(0);
    pointTo(outside());
    EXPECT_EQ(order(), "1 3 2 4");
}

TEST_F(LauncherModelFolderDrag, TheOnlyAppOutOfAFolderTakesItsPlace) {
    opened({app(1), games({2}), app(3)});
    liftFromFolder(0);
    pointTo(outside());
    EXPECT_EQ(order(), "1 2 3");
    EXPECT_TRUE(isDragging());
}

TEST_F(LauncherModelFolderDrag, ThePageThatHoldsTheAppIsShown) {
    LaunchItems items = appsTo(34);
    items.push_back(games({35, 36, 37})); // the last of the first page
    LauncherModel& model = opened(items);
    const Carried page(model, &LauncherModel::pageChanged);
    liftFromFolder(0);
    pointTo(outside());
    EXPECT_EQ(model.items()[35], app(35));
    EXPECT_EQ(model.page(), 1);
    EXPECT_EQ(page.animation(), spring(0.42, 0.86));
}

TEST_F(LauncherModelFolderDrag, AnAppPulledOutMergesLikeAnyOther) {
    LauncherModel& model = opened({app(1), app(2), games({3, 4, 5})});
    liftFromFolder(0);
    const QPointF offset = model.drag()->grabOffset;
    pointTo(outside());
    pointTo(iconAt(0) + offset);
    wait(0.18);
    EXPECT_EQ(model.mergeTargetID(), id(1));
    drop();
    EXPECT_EQ(order(), "[1 3] 2 [4 5]");
}

TEST_F(LauncherModelFolderDrag, AnAppPulledOutAndDroppedOnItsFolderIsBackInIt) {
    LauncherModel& model = opened({app(1), games({2, 3, 4})});
    liftFromFolder(0);
    const QPointF offset = model.drag()->grabOffset;
    pointTo(outside());
    pointTo(iconAt(1) + offset);
    drop();
    EXPECT_EQ(order(), "1 [3 4 2]");
    EXPECT_EQ(onDisk(), encodeItems(model.items()));
}

// --- The edits by themselves

TEST_F(LauncherModelEdits, AMoveToItsOwnPlaceOrBeyondTheEndOrOfAMissingItemDoesNothing) {
    LauncherModel& model = shownAs(appsTo(4));
    QSignalSpy items(&model, &LauncherModel::itemsChanged);
    model.move(id(2), 1);
    model.move(id(2), 4);
    model.move(u"a:/gone"_s, 0);
    EXPECT_EQ(items.count(), 0);
    model.move(id(2), 3);
    EXPECT_EQ(order(), "1 3 4 2");
    EXPECT_EQ(items.count(), 1);
}

TEST_F(LauncherModelEdits, AMoveInAFolderToItsOwnPlaceOrBeyondTheEndOrOfAMissingItemDoesNothing) {
    LauncherModel& model = shownAs({games({1, 2, 3}), app(4)});
    QSignalSpy items(&model, &LauncherModel::itemsChanged);
    model.moveInFolder(gamesID, path(2), 1);
    model.moveInFolder(gamesID, path(2), 3);
    model.moveInFolder(gamesID, path(4), 0);
    model.moveInFolder(QUuid::createUuid(), path(2), 0);
    EXPECT_EQ(items.count(), 0);
    model.moveInFolder(gamesID, path(2), 0);
    EXPECT_EQ(order(), "[2 1 3] 4");
}

TEST_F(LauncherModelEdits, NothingIsPulledOutOfAFolderThatIsGoneOrDoesNotHoldIt) {
    LauncherModel& model = shownAs({games({1, 2, 3}), app(4)});
    model.openFolder(gamesID);
    model.pullOut(path(1), QUuid::createUuid());
    model.pullOut(path(4), gamesID);
    EXPECT_EQ(order(), "[1 2 3] 4");
    EXPECT_TRUE(model.folderIsOpen());
}

TEST_F(LauncherModelEdits, APullOutWithoutADragStartsNone) {
    LauncherModel& model = shownAs({games({1, 2, 3}), app(4)});
    model.pullOut(path(2), gamesID);
    EXPECT_EQ(order(), "[1 3] 2 4");
    EXPECT_EQ(model.drag(), std::nullopt);
}
