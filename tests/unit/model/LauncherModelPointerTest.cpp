#include "data/FolderMetrics.h"
#include "support/ModelFixture.h"

#include <QSignalSpy>

using namespace amberquill;
using namespace Qt::StringLiterals;

using LauncherModelPointer = ModelFixture;

TEST_F(LauncherModelPointer, ATapOnAnAppHidesTheLauncherAndOpensIt) {
    LauncherModel& model = shownWith(80);
    tap(model.metrics().cellCenter(3));
    EXPECT_EQ(controller_->hides, std::vector<std::optional<QString>>{path(4)});
}

TEST_F(LauncherModelPointer, ATapOnAnAppOfAnotherPageOpensThatOne) {
    LauncherModel& model = shownWith(80);
    model.goToPage(1);
    tap(model.metrics().cellCenter(0));
    EXPECT_EQ(controller_->hides, std::vector<std::optional<QString>>{path(36)});
}

TEST_F(LauncherModelPointer, ATapOnEmptySpaceOnlyHides) {
    shownWith(80);
    tap({10, 10});
    EXPECT_EQ(controller_->hides, std::vector<std::optional<QString>>{std::nullopt});
}

TEST_F(LauncherModelPointer, APressOnThePaddingOfACellIsEmptySpace) {
    LauncherModel& model = shownWith(80);
    tap(model.metrics().tileRect(model.metrics().cellCenter(0)).topLeft() - QPointF(1, 1));
    EXPECT_EQ(controller_->hides, std::vector<std::optional<QString>>{std::nullopt});
}

TEST_F(LauncherModelPointer, SixPointsAreStillATapAndMoreAreNot) {
    LauncherModel& model = shownWith(80);
    const QPointF centre = model.metrics().cellCenter(0);
    press(centre);
    dragTo(centre, centre + QPointF(0, 6.0));
    EXPECT_EQ(model.pressedID(), u"a:"_s + path(1));
    release(centre, centre + QPointF(0, 6.0));
    EXPECT_EQ(controller_->hides.size(), 1U);
    press(centre);
    dragTo(centre, centre + QPointF(0, 6.01));
    EXPECT_EQ(model.pressedID(), QString());
    release(centre, centre + QPointF(0, 6.01));
    EXPECT_EQ(controller_->hides.size(), 1U);
}

TEST_F(LauncherModelPointer, ThePressedTileIsKnownFromPressToRelease) {
    LauncherModel& model = shownWith(80);
    const QPointF centre = model.metrics().cellCenter(2);
    press(centre);
    EXPECT_EQ(model.pressedID(), u"a:"_s + path(3));
    release(centre, centre);
    EXPECT_EQ(model.pressedID(), QString());
}

TEST_F(LauncherModelPointer, ThePressedTileCountsAndNotTheOneUnderTheRelease) {
    LauncherModel& model = shownWith(80);
    const QRectF tile = model.metrics().tileRect(model.metrics().cellCenter(0));
    const QPointF edge = tile.topLeft() + QPointF(1, 1);
    press(edge);
    release(edge, edge - QPointF(3, 0));
    EXPECT_EQ(controller_->hides, std::vector<std::optional<QString>>{path(1)});
}

TEST_F(LauncherModelPointer, AnAppThatIsGoneByTheReleaseOpensNothing) {
    LauncherModel& model = shownWith(3);
    const QPointF centre = model.metrics().cellCenter(2);
    press(centre);
    model.applyScan(apps(2));
    release(centre, centre);
    EXPECT_TRUE(controller_->hides.empty());
}

TEST_F(LauncherModelPointer, ACancelledGestureHasNoEffect) {
    LauncherModel& model = shownWith(3);
    const QPointF centre = model.metrics().cellCenter(0);
    press(centre);
    model.pointerCancelled();
    EXPECT_EQ(model.pressedID(), QString());
    release(centre, centre);
    EXPECT_TRUE(controller_->hides.empty());
}

TEST_F(LauncherModelPointer, AReleaseWithoutAPressDoesNothing) {
    LauncherModel& model = shownWith(3);
    const QPointF centre = model.metrics().cellCenter(0);
    release(centre, centre);
    EXPECT_TRUE(controller_->hides.empty());
}

TEST_F(LauncherModelPointer, ATapOnAFolderOpensItAndTapsGoToItsPanelThen) {
    const Folder folder{QUuid::createUuid(), u"F"_s, {path(2), path(3)}};
    files_.addFile(layoutPath, encodeItems({LaunchItem::folder(folder), LaunchItem::app(path(1))}));
    LauncherModel& model = shownWith(3);
    tap(model.metrics().cellCenter(0));
    ASSERT_EQ(model.openFolderID(), folder.id);
    EXPECT_TRUE(controller_->hides.empty());

    const FolderMetrics panel = FolderMetrics::of(2, model.metrics());
    press(panel.cellCenter(1));
    EXPECT_EQ(model.pressedID(), u"a:"_s + path(3));
    release(panel.cellCenter(1), panel.cellCenter(1));
    EXPECT_EQ(controller_->hides, std::vector<std::optional<QString>>{path(3)});

    tap(panel.panelRect.topLeft() + QPointF(5, 5));
    EXPECT_EQ(controller_->editingEnded, 1);
    EXPECT_TRUE(model.folderIsOpen());

    ASSERT_FALSE(holds(panel.panelRect, model.metrics().cellCenter(0)));
    tap(model.metrics().cellCenter(0)); // a tile lies there, beside the panel
    EXPECT_FALSE(model.folderIsOpen());
    EXPECT_EQ(controller_->hides.size(), 1U);
}

TEST_F(LauncherModelPointer, WithoutAWindowTapsDoNothing) {
    LauncherModel& model = shownWith(3);
    controller_.reset();
    tap(model.metrics().cellCenter(0));
    tap({5, 5});
    EXPECT_EQ(model.pressedID(), QString());
}

TEST_F(LauncherModelPointer, ATileIsActivatedByItsId) {
    LauncherModel& model = shownWith(3);
    model.activate(LaunchItem::app(path(2)).id());
    EXPECT_EQ(controller_->hides, std::vector<std::optional<QString>>{path(2)});
    model.activate(u"a:/nowhere"_s);
    EXPECT_EQ(controller_->hides.size(), 1U);
}

TEST_F(LauncherModelPointer, WithAFolderOpenOnlyItsTilesAreActivated) {
    const QUuid id = QUuid::createUuid();
    files_.addFile(layoutPath, encodeItems({LaunchItem::folder({id, u"F"_s, {path(1), path(2)}}),
                                            LaunchItem::app(path(3))}));
    LauncherModel& model = shownWith(3);
    model.activate(LaunchItem::folder({id, {}, {}}).id());
    ASSERT_EQ(model.openFolderID(), id);
    model.activate(LaunchItem::app(path(3)).id());
    EXPECT_TRUE(controller_->hides.empty());
    model.activate(LaunchItem::app(path(2)).id());
    EXPECT_EQ(controller_->hides, std::vector<std::optional<QString>>{path(2)});
}

TEST(DragTracker, EmitsForANewLocationOnly) {
    DragTracker tracker;
    QSignalSpy changes(&tracker, &DragTracker::locationChanged);
    tracker.setLocation({1, 2});
    EXPECT_EQ(tracker.location(), QPointF(1, 2));
    EXPECT_EQ(changes.count(), 1);
    tracker.setLocation({1, 2});
    EXPECT_EQ(changes.count(), 1);
}
