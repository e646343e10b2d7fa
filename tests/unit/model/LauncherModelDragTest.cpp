#include "motion/Animations.h"
#include "support/DragFixture.h"

#include <QSignalSpy>

using namespace amberquill;
using namespace Qt::StringLiterals;

using LauncherModelDrag = DragFixture;

// --- How a drag begins

TEST_F(LauncherModelDrag, BeginsOnTheFirstChangeThatIsMoreThanSixPointsAway) {
    LauncherModel& model = shownAs(appsTo(5));
    const QPointF place = iconAt(1);
    press(place);
    dragTo(place, place + QPointF(6, 0));
    EXPECT_EQ(model.drag(), std::nullopt);
    EXPECT_EQ(model.pressedID(), id(2));
    dragTo(place, place + QPointF(6.01, 0));
    ASSERT_TRUE(isDragging());
    EXPECT_EQ(*model.drag(), (DragInfo{id(2), app(2), std::nullopt, {0, 0}, false}));
    EXPECT_EQ(model.draggedID(), id(2));
    EXPECT_EQ(model.pressedID(), QString());
    EXPECT_EQ(model.tracker()->location(), place + QPointF(6.01, 0));
    EXPECT_EQ(order(), "1 2 3 4 5") << "the dragged item stays in the layout";
}

TEST_F(LauncherModelDrag, TheGrabOffsetIsThePointersFromTheIconsCentre) {
    LauncherModel& model = shownAs(appsTo(80));
    model.goToPage(1);
    lift(iconAt(3) + QPointF(10, 20));
    ASSERT_TRUE(isDragging());
    EXPECT_EQ(model.drag()->id, id(39));
    EXPECT_EQ(model.drag()->grabOffset, QPointF(10, 20));
}

TEST_F(LauncherModelDrag, ADragDuringASwipeUsesTheScrollOffsetAndResetsIt) {
    LauncherModel& model = shownAs(appsTo(80));
    model.handleScroll({{0, 0}, true, ScrollEvent::Phase::Began, false});
    model.handleScroll({{-30, 0}, true, ScrollEvent::Phase::Changed, false});
    ASSERT_EQ(model.scrollOffset(), -30);
    lift(iconAt(1) + QPointF(-30 + 4, 5));
    ASSERT_TRUE(isDragging());
    EXPECT_EQ(model.drag()->id, id(2));
    EXPECT_EQ(model.drag()->grabOffset, QPointF(4, 5));
    EXPECT_EQ(model.scrollOffset(), 0);
}

TEST_F(LauncherModelDrag, NothingButATileIsDragged) {
    LauncherModel& model = shownAs(appsTo(5));
    lift({10, 10});
    EXPECT_FALSE(isDragging());
    drop();
    EXPECT_TRUE(controller_->hides.empty()) << "not a tap";
    lift(iconAt(20));
    EXPECT_FALSE(isDragging());
    drop();
    EXPECT_EQ(model.pendingKey(), QString());
}

TEST_F(LauncherModelDrag, AnItemThatIsGoneIsNotDragged) {
    LauncherModel& model = shownAs(appsTo(5));
    press(iconAt(4));
    model.applyScan(apps(4));
    dragTo(iconAt(4), iconAt(2));
    EXPECT_FALSE(isDragging());
    release(iconAt(4), iconAt(2));
    EXPECT_TRUE(controller_->hides.empty());
}

TEST_F(LauncherModelDrag, AResultOfASearchIsNeitherMovedNorLaunchedByADrag) {
    LauncherModel& model = shownAs(appsTo(5));
    model.setSearchText(u"App"_s);
    queue_.runPosted();
    ASSERT_EQ(model.displayedItems().size(), 5U);
    press(iconAt(1));
    EXPECT_EQ(model.pressedID(), id(2));
    dragTo(iconAt(1), iconAt(3));
    EXPECT_EQ(model.pressedID(), QString());
    EXPECT_FALSE(isDragging());
    release(iconAt(1), iconAt(3));
    EXPECT_TRUE(controller_->hides.empty());
    EXPECT_EQ(order(), "1 2 3 4 5");
    tap(iconAt(1));
    EXPECT_EQ(controller_->hides.size(), 1U);
}

TEST_F(LauncherModelDrag, ScrollingIsIgnoredDuringADrag) {
    LauncherModel& model = shownAs(appsTo(80));
    liftIcon(0);
    model.handleScroll({{0, -1}, false, ScrollEvent::Phase::None, false});
    EXPECT_EQ(model.page(), 0);
}

// --- What a move of the pointer publishes

TEST_F(LauncherModelDrag, AMoveOfThePointerChangesOnlyTheTracker) {
    LauncherModel& model = shownAs(appsTo(80));
    liftIcon(0);
    QSignalSpy drag(&model, &LauncherModel::dragChanged);
    QSignalSpy items(&model, &LauncherModel::itemsChanged);
    QSignalSpy pressed(&model, &LauncherModel::pressedIDChanged);
    QSignalSpy target(&model, &LauncherModel::mergeTargetIDChanged);
    QSignalSpy page(&model, &LauncherModel::pageChanged);
    QSignalSpy tracker(model.tracker(), &DragTracker::locationChanged);
    for (int step = 0; step < 100; ++step) {
        pointTo(iconAt(0) + QPointF(10.0 * step, 5.0 * step));
    }
    EXPECT_EQ(tracker.count(), 100);
    EXPECT_EQ(drag.count() + items.count() + pressed.count() + target.count() + page.count(), 0);
    EXPECT_EQ(model.tracker()->location(), pointer_);
}

// --- Turning pages

TEST_F(LauncherModelDrag, AnIconHeldAtAnEdgeTurnsThePageAfterSixHundredAndFiftyMilliseconds) {
    LauncherModel& model = shownAs(appsTo(80));
    liftIcon(0);
    const Carried carried(model, &LauncherModel::pageChanged);
    pointTo({1470, 400});
    EXPECT_EQ(model.pendingKey(), u"page:1"_s);
    wait(0.649);
    EXPECT_EQ(model.page(), 0);
    wait(0.001);
    EXPECT_EQ(model.page(), 1);
    EXPECT_EQ(carried.animation(), spring(0.42, 0.86));
}

TEST_F(LauncherModelDrag, AnIconHeldStillTurnsOnePageAndTheNextAfterAMove) {
    LauncherModel& model = shownAs(appsTo(140));
    liftIcon(0);
    pointTo({1470, 400});
    wait(5);
    EXPECT_EQ(model.page(), 1);
    pointTo({1471, 400});
    EXPECT_EQ(model.pendingKey(), u"page:2"_s);
    wait(0.65);
    EXPECT_EQ(model.page(), 2);
    pointTo({30, 400});
    EXPECT_EQ(model.pendingKey(), u"page:1"_s);
    wait(0.65);
    EXPECT_EQ(model.page(), 1);
}

TEST_F(LauncherModelDrag, AtTheLeftEdgeOfTheFirstPageNoPageTurns) {
    LauncherModel& model = shownAs(appsTo(80));
    liftIcon(0);
    pointTo(iconAt(3));
    ASSERT_NE(model.pendingKey(), QString());
    pointTo({39, 400});
    EXPECT_EQ(model.pendingKey(), QString());
    wait(2);
    EXPECT_EQ(model.page(), 0);
    EXPECT_EQ(model.mergeTargetID(), QString());
}

TEST_F(LauncherModelDrag, AtTheRightEdgeOfTheLastPageNoPageTurns) {
    LauncherModel& model = shownAs(appsTo(80));
    model.goToPage(2);
    liftIcon(0);
    pointTo({1470, 400});
    EXPECT_EQ(model.pendingKey(), QString());
    wait(2);
    EXPECT_EQ(model.page(), 2);
}

TEST_F(LauncherModelDrag, ThePageTurnedToIsClamped) {
    LauncherModel& model = shownAs(appsTo(71));
    model.goToPage(1);
    lift(iconAt(0));
    pointTo({1470, 400});
    ASSERT_EQ(model.pendingKey(), u"page:2"_s);
    model.merge(id(1), id(2)); // 70 items are left
    wait(0.65);
    EXPECT_EQ(model.page(), 1);
}

TEST_F(LauncherModelDrag, ASearchThatBeginsDuringADragLosesNothing) {
    LauncherModel& model = shownAs(appsTo(80));
    liftIcon(0);
    pointTo(iconAt(3) + QPointF(70, 0));
    model.setSearchText(u"App 7"_s);
    wait(0.35);
    drop();
    wait(0.19);
    EXPECT_FALSE(isDragging());
    model.setSearchText({});
    EXPECT_EQ(model.items().size(), 80U);
    EXPECT_EQ(model.items()[3], app(1));
    EXPECT_EQ(onDisk(), encodeItems(model.items()));
}

// --- Reordering

TEST_F(LauncherModelDrag, AnIconOverAnotherItemsCellMovesThereAfterThreeHundredAndFiftyMilliseconds) {
    LauncherModel& model = shownAs(appsTo(6));
    liftIcon(0);
    const Carried carried(model, &LauncherModel::itemsChanged);
    pointTo(iconAt(3) + QPointF(70, 0));
    EXPECT_EQ(model.pendingKey(), u"move:3"_s);
    wait(0.349);
    EXPECT_EQ(order(), "1 2 3 4 5 6");
    wait(0.001);
    EXPECT_EQ(order(), "2 3 4 1 5 6");
    EXPECT_EQ(carried.animation(), spring(0.32, 0.82));
    EXPECT_EQ(model.pendingKey(), QString());
    EXPECT_TRUE(isDragging());
}

TEST_F(LauncherModelDrag, OverItsNewSlotNothingIsPending) {
    LauncherModel& model = shownAs(appsTo(6));
    liftIcon(0);
    pointTo(iconAt(3) + QPointF(70, 0));
    wait(0.35);
    pointTo(iconAt(3) + QPointF(60, 0));
    EXPECT_EQ(model.pendingKey(), QString());
    pointTo(iconAt(1) + QPointF(70, 0));
    wait(0.35);
    EXPECT_EQ(order(), "2 1 3 4 5 6");
}

TEST_F(LauncherModelDrag, MovesOverASlotKeepTheTimerAndAnotherSlotRestartsIt) {
    LauncherModel& model = shownAs(appsTo(6));
    liftIcon(0);
    for (int step = 0; step < 7; ++step) {
        pointTo(iconAt(3) + QPointF(70 + step % 2, 0));
        wait(0.049);
    }
    EXPECT_EQ(order(), "1 2 3 4 5 6");
    wait(0.007); // 350 ms since the first move
    EXPECT_EQ(order(), "2 3 4 1 5 6");

    pointTo(iconAt(4) + QPointF(70, 0));
    wait(0.3);
    pointTo(iconAt(0) + QPointF(70, 0));
    EXPECT_EQ(model.pendingKey(), u"move:0"_s);
    wait(0.349);
    EXPECT_EQ(order(), "2 3 4 1 5 6");
    wait(0.001);
    EXPECT_EQ(order(), "1 2 3 4 5 6");
}

TEST_F(LauncherModelDrag, PastTheLastItemAnAppMovesToTheEndAfterThreeHundredMilliseconds) {
    LauncherModel& model = shownAs(appsTo(6));
    liftIcon(1);
    pointTo(iconAt(20));
    EXPECT_EQ(model.pendingKey(), u"move:5"_s);
    wait(0.299);
    EXPECT_EQ(order(), "1 2 3 4 5 6");
    wait(0.001);
    EXPECT_EQ(order(), "1 3 4 5 6 2");
}

TEST_F(LauncherModelDrag, TheLastItemPastTheEndSchedulesNothing) {
    LauncherModel& model = shownAs(appsTo(6));
    liftIcon(5);
    pointTo(iconAt(0) + QPointF(70, 0));
    ASSERT_NE(model.pendingKey(), QString());
    pointTo(iconAt(20));
    EXPECT_EQ(model.pendingKey(), QString());
    wait(1);
    EXPECT_EQ(order(), "1 2 3 4 5 6");
}

TEST_F(LauncherModelDrag, AFolderOverAnAppNeverMarksItButReorders) {
    LauncherModel& model = shownAs({app(1), app(2), games({3, 4})});
    QSignalSpy target(&model, &LauncherModel::mergeTargetIDChanged);
    liftIcon(2);
    pointTo(iconAt(0));
    EXPECT_EQ(model.pendingKey(), u"move:0"_s);
    wait(0.349);
    EXPECT_EQ(order(), "1 2 [3 4]");
    wait(0.001);
    EXPECT_EQ(order(), "[3 4] 1 2");
    EXPECT_EQ(target.count(), 0);
}

TEST_F(LauncherModelDrag, AnIconCarriedToAnotherPageMovesThere) {
    LauncherModel& model = shownAs(appsTo(80));
    liftIcon(0);
    pointTo({1470, 400});
    wait(0.65);
    pointTo(iconAt(2) + QPointF(70, 0));
    EXPECT_EQ(model.pendingKey(), u"move:37"_s);
    wait(0.35);
    EXPECT_EQ(model.items()[37], app(1));
    EXPECT_EQ(model.items()[36], app(38));
    EXPECT_EQ(model.items()[0], app(2));
}

TEST_F(LauncherModelDrag, NothingIsSavedBeforeTheDragEnds) {
    LauncherModel& model = shownAs(appsTo(6));
    const int writes = files_.writes();
    const int saves = files_.writesOf(layoutPath);
    liftIcon(0);
    pointTo(iconAt(3) + QPointF(70, 0));
    wait(0.35);
    pointTo(iconAt(4) + QPointF(70, 0));
    wait(0.35);
    EXPECT_EQ(files_.writes(), writes);
    drop();
    queue_.runPosted();
    EXPECT_EQ(files_.writesOf(layoutPath), saves + 1);
    EXPECT_EQ(onDisk(), encodeItems(model.items()));
    wait(1);
    EXPECT_EQ(files_.writesOf(layoutPath), saves + 1);
}

// --- Merging

TEST_F(LauncherModelDrag, RestingOverAnAppMarksItAfterAHundredAndEightyMilliseconds) {
    LauncherModel& model = shownAs(appsTo(6));
    liftIcon(0);
    const Carried carried(model, &LauncherModel::mergeTargetIDChanged);
    pointTo(iconAt(3));
    EXPECT_EQ(model.pendingKey(), u"merge:"_s + id(4));
    wait(0.179);
    EXPECT_EQ(model.mergeTargetID(), QString());
    wait(0.001);
    EXPECT_EQ(model.mergeTargetID(), id(4));
    EXPECT_EQ(carried.animation(), spring(0.25, 0.7));
}

TEST_F(LauncherModelDrag, AMarkedAppStaysMarkedWithinTheHoldRadiusOnly) {
    LauncherModel& model = shownAs(appsTo(6));
    liftIcon(0);
    pointTo(iconAt(3));
    wait(0.18);
    const Carried carried(model, &LauncherModel::mergeTargetIDChanged);
    pointTo(iconAt(3) + QPointF(78.8, 0));
    EXPECT_EQ(model.mergeTargetID(), id(4));
    EXPECT_EQ(model.pendingKey(), QString());
    wait(1);
    EXPECT_EQ(order(), "1 2 3 4 5 6");
    pointTo(iconAt(3) + QPointF(78.9, 0));
    EXPECT_EQ(model.mergeTargetID(), QString());
    EXPECT_EQ(carried.animation(), spring(0.25, 0.7));
    EXPECT_EQ(model.pendingKey(), u"move:3"_s);
}

TEST_F(LauncherModelDrag, LeavingBeforeItIsMarkedMarksNothing) {
    LauncherModel& model = shownAs(appsTo(6));
    QSignalSpy target(&model, &LauncherModel::mergeTargetIDChanged);
    liftIcon(0);
    pointTo(iconAt(3));
    wait(0.17);
    pointTo(iconAt(4));
    wait(0.179);
    EXPECT_EQ(target.count(), 0);
    wait(0.001);
    EXPECT_EQ(model.mergeTargetID(), id(5));
    pointTo({750, 60});
    EXPECT_EQ(model.mergeTargetID(), QString());
    EXPECT_EQ(target.count(), 2);
    pointTo({750, 50});
    EXPECT_EQ(target.count(), 2) << "cleared only when one is set";
}

TEST_F(LauncherModelDrag, ADropOnAMarkedAppMakesAFolderThatOpensThreeHundredMillisecondsLater) {
    LauncherModel& model = shownAs(appsTo(6));
    liftIcon(0);
    pointTo(iconAt(3));
    wait(0.18);
    pointTo(iconAt(3) + QPointF(70, 0)); // beyond the merge radius
    const Carried merged(model, &LauncherModel::itemsChanged);
    const Carried opened(model, &LauncherModel::openFolderIDChanged);
    drop();
    EXPECT_EQ(order(), "2 3 [4 1] 5 6");
    EXPECT_EQ(merged.animation(), spring(0.35, 0.8));
    EXPECT_FALSE(isDragging()) << "at once, without a glide";
    EXPECT_EQ(model.mergeTargetID(), QString());
    EXPECT_EQ(onDisk(), encodeItems(model.items()));
    const Folder made = *model.items()[2].asFolder();
    EXPECT_EQ(made.name, u"New Folder"_s);
    wait(0.299);
    EXPECT_EQ(model.openFolderID(), std::nullopt);
    wait(0.001);
    EXPECT_EQ(model.openFolderID(), made.id);
    EXPECT_EQ(opened.animation(), spring(0.34, 0.86));
}

TEST_F(LauncherModelDrag, AQuickDropOntoAnAppMergesBeforeItIsMarked) {
    LauncherModel& model = shownAs(appsTo(6));
    QSignalSpy target(&model, &LauncherModel::mergeTargetIDChanged);
    liftIcon(0);
    pointTo(iconAt(3) + QPointF(55, 0));
    wait(0.17);
    drop();
    EXPECT_EQ(order(), "2 3 [4 1] 5 6");
    EXPECT_EQ(target.count(), 0);
    EXPECT_EQ(model.pendingKey(), QString());
}

TEST_F(LauncherModelDrag, AQuickDropFurtherAwayDoesNot) {
    LauncherModel& model = shownAs(appsTo(6));
    liftIcon(0);
    pointTo(iconAt(3) + QPointF(56, 0));
    drop();
    EXPECT_EQ(order(), "1 2 3 4 5 6");
    EXPECT_TRUE(model.drag()->dropping);
    wait(1);
    EXPECT_EQ(order(), "1 2 3 4 5 6") << "the pending intent is not carried out after the drop";
}

TEST_F(LauncherModelDrag, ADropOnAFolderAddsTheAppAtItsEndAndOpensNothing) {
    LauncherModel& model = shownAs({app(1), games({2, 3}), app(4)});
    liftIcon(2);
    pointTo(iconAt(1));
    wait(0.18);
    EXPECT_EQ(model.mergeTargetID(), games({}).id());
    drop();
    EXPECT_EQ(order(), "1 [2 3 4]");
    EXPECT_EQ(onDisk(), encodeItems(model.items()));
    wait(1);
    EXPECT_EQ(model.openFolderID(), std::nullopt);
    EXPECT_EQ(queue_.timers(), 0U);
}

TEST_F(LauncherModelDrag, AFolderDroppedOnAnAppDoesNotMerge) {
    shownAs({app(1), games({2, 3}), app(4)});
    liftIcon(1);
    pointTo(iconAt(0));
    drop();
    wait(1);
    EXPECT_EQ(order(), "1 [2 3] 4");
}

TEST_F(LauncherModelDrag, AMergeThatEmptiesTheLastPageShowsTheOneBefore) {
    LauncherModel& model = shownAs(appsTo(36));
    QSignalSpy count(&model, &LauncherModel::pageCountChanged);
    model.goToPage(1);
    liftIcon(0);
    pointTo({30, 400});
    wait(0.65);
    ASSERT_EQ(model.page(), 0);
    pointTo(iconAt(3));
    model.goToPage(1); // the page that disappears
    model.merge(id(36), id(4));
    EXPECT_EQ(model.page(), 0);
    EXPECT_EQ(count.count(), 1);
}

TEST_F(LauncherModelDrag, ATargetThatIsGoneLeavesTheAppAtItsPlace) {
    shownAs(appsTo(4));
    model_->merge(id(2), u"a:/gone"_s);
    EXPECT_EQ(order(), "1 2 3 4");
    model_->merge(u"a:/gone"_s, id(2));
    EXPECT_EQ(order(), "1 2 3 4");
    EXPECT_EQ(queue_.timers(), 0U);
}

// --- The drop

TEST_F(LauncherModelDrag, AReleasedIconGlidesAndTheDragEndsAHundredAndNinetyMillisecondsLater) {
    LauncherModel& model = shownAs(appsTo(6));
    lift(iconAt(2) + QPointF(10, 20));
    pointTo(iconAt(10));
    const Carried tracked(model, &LauncherModel::dragChanged);
    std::optional<Animation> glide;
    QObject::connect(model.tracker(), &DragTracker::locationChanged,
                     [&glide] { glide = currentAnimation(); });
    wait(0.1);
    drop();
    ASSERT_TRUE(isDragging());
    EXPECT_TRUE(model.drag()->dropping);
    EXPECT_EQ(model.tracker()->location(), iconAt(2) + QPointF(10, 20));
    EXPECT_EQ(glide, easeOut(0.18));
    EXPECT_EQ(tracked.animation(), easeOut(0.18));
    EXPECT_EQ(model.pendingKey(), QString());
    wait(0.189);
    EXPECT_TRUE(isDragging());
    wait(0.001);
    EXPECT_FALSE(isDragging());
    EXPECT_EQ(tracked.animation(), std::nullopt);
    EXPECT_EQ(queue_.timers(), 0U);
}

TEST_F(LauncherModelDrag, APressDuringTheGlideBecomesADragAfterIt) {
    LauncherModel& model = shownAs(appsTo(6));
    liftIcon(0);
    pointTo(iconAt(10));
    drop();
    const QPointF landing = model.tracker()->location();
    start_ = iconAt(3);
    press(start_);
    EXPECT_EQ(model.pressedID(), id(4));
    pointTo(iconAt(5));
    EXPECT_EQ(model.drag()->id, id(1)) << "still the gliding drag";
    EXPECT_EQ(model.tracker()->location(), landing);
    EXPECT_EQ(model.pendingKey(), QString());
    wait(0.19);
    EXPECT_FALSE(isDragging());
    pointTo(iconAt(5) + QPointF(1, 0));
    ASSERT_TRUE(isDragging());
    EXPECT_EQ(model.drag()->id, id(4));
    EXPECT_FALSE(model.drag()->dropping);
}

TEST_F(LauncherModelDrag, AClickWhileTheIconGlidesNeitherLaunchesNorDelaysNorMerges) {
    LauncherModel& model = shownAs(appsTo(80));
    liftIcon(0);
    pointTo(iconAt(34) + QPointF(70, 0));
    drop();
    wait(0.1);
    model.goToPage(1);
    tap(iconAt(3));
    EXPECT_TRUE(controller_->hides.empty());
    wait(0.089);
    EXPECT_TRUE(isDragging());
    wait(0.001);
    EXPECT_FALSE(isDragging());
    EXPECT_EQ(model.items(), appsTo(80));
    EXPECT_EQ(queue_.timers(), 0U);
}

TEST_F(LauncherModelDrag, ADropOfAnItemThatLiesOnAnotherPageEndsAtOnce) {
    LauncherModel& model = shownAs(appsTo(80));
    liftIcon(0);
    pointTo({1470, 400});
    wait(0.65);
    ASSERT_EQ(model.page(), 1);
    pointTo({750, 60});
    drop();
    EXPECT_FALSE(isDragging());
    EXPECT_EQ(queue_.timers(), 0U);
    EXPECT_EQ(onDisk(), encodeItems(appsTo(80)));
}

TEST_F(LauncherModelDrag, ADropOfAnItemThatIsGoneEndsAtOnceAndMergesWithNothing) {
    LauncherModel& model = shownAs(appsTo(6));
    liftIcon(0);
    model.merge(id(1), id(2));
    model.closeFolder();
    ASSERT_EQ(order(), "[2 1] 3 4 5 6");
    pointTo(iconAt(2));
    EXPECT_EQ(model.pendingKey(), QString());
    drop();
    EXPECT_FALSE(isDragging());
    EXPECT_EQ(order(), "[2 1] 3 4 5 6");
    EXPECT_EQ(onDisk(), encodeItems(model.items()));
}

TEST_F(LauncherModelDrag, TheGlideGoesToTheItemsCurrentPlace) {
    LauncherModel& model = shownAs(appsTo(6));
    liftIcon(0);
    pointTo(iconAt(3) + QPointF(70, 0));
    wait(0.35);
    drop();
    EXPECT_EQ(model.tracker()->location(), iconAt(3));
}

TEST_F(LauncherModelDrag, AScanThatComesInDuringADragIsAppliedWhenTheGlideIsOver) {
    LauncherModel& model = shownAs(appsTo(6));
    QSignalSpy scanned(&model, &LauncherModel::scanned);
    liftIcon(0);
    model.applyScan(apps(3));
    model.applyScan(apps(7));
    EXPECT_EQ(order(), "1 2 3 4 5 6");
    EXPECT_EQ(model.apps().size(), 6);
    pointTo(iconAt(3) + QPointF(70, 0));
    wait(0.35);
    drop();
    EXPECT_EQ(order(), "2 3 4 1 5 6");
    wait(0.189);
    EXPECT_EQ(order(), "2 3 4 1 5 6");
    wait(0.001);
    EXPECT_EQ(order(), "2 3 4 1 5 6 7");
    EXPECT_EQ(model.apps().size(), 7);
    EXPECT_EQ(scanned.count(), 1) << "the newest only";
    EXPECT_EQ(onDisk(), encodeItems(model.items()));
}

TEST_F(LauncherModelDrag, AScanThatComesInDuringADragIsAppliedAfterAMerge) {
    LauncherModel& model = shownAs(appsTo(6));
    liftIcon(0);
    model.applyScan(apps(3));
    pointTo(iconAt(3));
    drop();
    EXPECT_EQ(order(), "2 3 [1]") << "4 is gone";
    EXPECT_EQ(onDisk(), encodeItems(model.items()));
}

TEST_F(LauncherModelDrag, AScanThatComesInDuringADragIsAppliedAfterADropWithoutALanding) {
    LauncherModel& model = shownAs(appsTo(80));
    liftIcon(0);
    model.applyScan(apps(40));
    pointTo({1470, 400});
    wait(0.65);
    pointTo({750, 60});
    drop();
    EXPECT_EQ(model.items(), appsTo(40));
}

TEST_F(LauncherModelDrag, ADestroyedModelRunsNoTimer) {
    for (const double held : {0.0, 0.17, 0.36}) {
        shownAs(appsTo(6));
        liftIcon(0);
        pointTo(iconAt(3));
        wait(held);
        if (held > 0.2) {
            drop();
        }
        model_.reset();
        wait(1);
        EXPECT_EQ(queue_.timers(), 0U);
    }
    shownAs(appsTo(6));
    liftIcon(0);
    pointTo(iconAt(20));
    drop();
    model_.reset();
    wait(1);
}

// --- Cancelled gestures

TEST_F(LauncherModelDrag, ACancelledDragEndsWhereItIsAndSaves) {
    LauncherModel& model = shownAs(appsTo(6));
    liftIcon(0);
    pointTo(iconAt(3) + QPointF(70, 0));
    wait(0.35);
    pointTo(iconAt(4));
    wait(0.18);
    pointTo(iconAt(4) + QPointF(70, 0));
    ASSERT_EQ(model.mergeTargetID(), id(5));
    model.applyScan(apps(7));
    model.pointerCancelled();
    EXPECT_FALSE(isDragging());
    EXPECT_EQ(model.mergeTargetID(), QString());
    EXPECT_EQ(model.pressedID(), QString());
    EXPECT_EQ(model.pendingKey(), QString());
    EXPECT_EQ(queue_.timers(), 0U);
    EXPECT_EQ(order(), "2 3 4 1 5 6 7") << "moved but not merged; the scan applied";
    EXPECT_EQ(onDisk(), encodeItems(model.items()));
}

TEST_F(LauncherModelDrag, ACancelledDragDropsThePendingIntent) {
    LauncherModel& model = shownAs(appsTo(80));
    for (const QPointF& place : {iconAt(3), iconAt(3) + QPointF(70, 0), QPointF(1470, 400)}) {
        liftIcon(0);
        pointTo(place);
        ASSERT_EQ(queue_.timers(), 1U);
        model.pointerCancelled();
        EXPECT_EQ(queue_.timers(), 0U);
        wait(1);
    }
    EXPECT_EQ(model.items(), appsTo(80));
    EXPECT_EQ(model.page(), 0);
}

TEST_F(LauncherModelDrag, TheRestOfACancelledGestureIsIgnored) {
    LauncherModel& model = shownAs(appsTo(6));
    liftIcon(0);
    model.pointerCancelled();
    pointTo(iconAt(3));
    EXPECT_FALSE(isDragging());
    EXPECT_EQ(model.pressedID(), QString());
    drop();
    EXPECT_EQ(order(), "1 2 3 4 5 6");
    EXPECT_TRUE(controller_->hides.empty());
    liftIcon(1);
    EXPECT_EQ(model.draggedID(), id(2)) << "the next gesture counts";
}

TEST_F(LauncherModelDrag, TheNextPressCountsEvenIfTheCancelledGestureNeverEnded) {
    LauncherModel& model = shownAs(appsTo(6));
    liftIcon(0);
    model.pointerCancelled();
    liftIcon(0);
    EXPECT_EQ(model.draggedID(), id(1));
}

TEST_F(LauncherModelDrag, HidingDuringTheGlideLeavesNothingBehind) {
    LauncherModel& model = shownAs(appsTo(6));
    liftIcon(0);
    pointTo(iconAt(10));
    drop();
    model.applyScan(apps(7));
    model.willHide();
    EXPECT_FALSE(isDragging());
    EXPECT_EQ(queue_.timers(), 0U);
    EXPECT_EQ(order(), "1 2 3 4 5 6 7");
    EXPECT_EQ(onDisk(), encodeItems(model.items()));
}

TEST_F(LauncherModelDrag, AFolderJustMadeDoesNotOpenOnceTheLauncherHides) {
    LauncherModel& model = shownAs(appsTo(6));
    liftIcon(0);
    pointTo(iconAt(3));
    drop();
    ASSERT_EQ(queue_.timers(), 1U);
    model.willHide();
    EXPECT_EQ(queue_.timers(), 0U);
    wait(1);
    EXPECT_EQ(model.openFolderID(), std::nullopt);
}

TEST_F(LauncherModelDrag, ShowingTheLauncherClearsADrag) {
    LauncherModel& model = shownAs(appsTo(6));
    liftIcon(0);
    pointTo(iconAt(3));
    wait(0.18);
    ASSERT_EQ(model.mergeTargetID(), id(4));
    model.willShow();
    EXPECT_FALSE(isDragging());
    EXPECT_EQ(model.mergeTargetID(), QString());
    EXPECT_EQ(model.pendingKey(), QString());
    queue_.runPosted();
    EXPECT_EQ(order(), "1 2 3 4 5 6");
    pointTo(iconAt(4));
    EXPECT_FALSE(isDragging());
}

TEST_F(LauncherModelDrag, AHeldBackScanNeverUndoesANewerOne) {
    LauncherModel& model = shownAs(appsTo(6));
    liftIcon(0);
    model.applyScan(apps(5));
    installed_ = apps(8);
    model.willShow();
    queue_.runPosted();
    EXPECT_EQ(model.items(), (LaunchItems{app(1), app(2), app(3), app(4), app(5), app(6), app(7), app(8)}));
    liftIcon(0);
    pointTo(iconAt(20));
    drop();
    wait(1);
    EXPECT_EQ(model.items().size(), 8U);
}
