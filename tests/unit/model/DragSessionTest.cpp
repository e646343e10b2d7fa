#include "model/DragSession.h"

#include "support/NumberedItems.h"

#include <QStringList>
#include <gtest/gtest.h>

using namespace amberquill;
using namespace Qt::StringLiterals;

namespace {

QString orNone(const QString& id) {
    return id.isEmpty() ? u"none"_s : id;
}

QString textOf(const QPointF& point) {
    return u"%1,%2"_s.arg(point.x()).arg(point.y());
}

// An action as text, so that tables of them can be read.
struct ActionText {
    QString operator()(const DragSession::SetPressed& a) { return u"press "_s + orNone(a.id); }
    QString operator()(const DragSession::SetDrag& a) {
        if (!a.drag) {
            return u"drag none"_s;
        }
        return u"drag "_s + a.drag->id + (a.drag->fromFolder ? u" in folder"_s : QString());
    }
    QString operator()(const DragSession::SetMergeTarget& a) { return u"mark "_s + orNone(a.id); }
    QString operator()(const DragSession::SetPointer& a) { return u"pointer "_s + textOf(a.location); }
    QString operator()(const DragSession::StopScrolling&) { return u"stop scrolling"_s; }
    QString operator()(const DragSession::StartTimer& a) { return u"timer %1"_s.arg(a.seconds); }
    QString operator()(const DragSession::StopTimer&) { return u"stop timer"_s; }
    QString operator()(const DragSession::FlipPage& a) { return u"page %1"_s.arg(a.page); }
    QString operator()(const DragSession::Move& a) { return u"move %1 to %2"_s.arg(a.id).arg(a.to); }
    QString operator()(const DragSession::MoveInFolder& a) {
        return u"move %1 in folder to %2"_s.arg(a.path).arg(a.to);
    }
    QString operator()(const DragSession::PullOut& a) { return u"pull out "_s + a.path; }
    QString operator()(const DragSession::Merge& a) {
        return u"merge %1 into %2"_s.arg(a.draggedID, a.targetID);
    }
    QString operator()(const DragSession::Glide& a) {
        return u"glide %1 to %2"_s.arg(a.drag.id, textOf(a.location));
    }
    QString operator()(const DragSession::StopGlide&) { return u"stop glide"_s; }
    QString operator()(const DragSession::Tap& a) {
        if (const auto* tile = std::get_if<Hit::GridItem>(&a.hit.what)) {
            return u"tap "_s + tile->id;
        }
        return std::holds_alternative<Hit::Empty>(a.hit.what) ? u"tap nothing"_s : u"tap in folder"_s;
    }
    QString operator()(const DragSession::Save&) { return u"save"_s; }
    QString operator()(const DragSession::ApplyDeferred&) { return u"deferred"_s; }
};

std::string text(const DragSession::Actions& actions) {
    QStringList texts;
    for (const DragSession::Action& action : actions) {
        texts.append(std::visit(ActionText(), action));
    }
    return texts.join(u"; "_s).toStdString();
}

// Cells of 180 × 140 from (120, 120), icons' centres 12 above the cells', a merge radius of 55.68 and a hold
// radius of 78.88. The applications "0" … "79" on three pages.
class DragSessionTest : public testing::Test {
protected:
    static QPointF icon(int slot) { return iconCenter(grid, slot); }
    // In the cell, too far from the icon to merge with it.
    static QPointF beside(int slot) { return icon(slot) + QPointF(70, 0); }

    [[nodiscard]] DragScene scene() const {
        return {.items = items_,
                .displayedItems = items_,
                .metrics = grid,
                .page = page_,
                .scrollOffset = scrollOffset_,
                .isSearching = isSearching_,
                .openFolderID = openFolderID_};
    }

    std::string press(const QPointF& place) {
        start_ = place;
        return moveTo(place);
    }
    std::string moveTo(const QPointF& place) {
        pointer_ = place;
        const std::string gesture = text(session_.pointerChanged({start_, place}, scene()));
        const std::string drag = text(session_.dragMoved(place, scene()));
        return gesture + (gesture.empty() || drag.empty() ? "" : " | ") + drag;
    }
    std::string release() { return text(session_.pointerReleased({start_, pointer_}, scene())); }
    std::string cancel() { return text(session_.pointerCancelled()); }
    std::string timer() { return text(session_.timerFired()); }
    // Begins a drag of the icon in this slot: from then on the floating icon's centre is the pointer.
    void lift(int slot) {
        press(icon(slot));
        moveTo(icon(slot) + QPointF(7, 0));
    }

    static inline const GridMetrics grid{{1500, 892}, 7, 5};
    static inline const QUuid folderID{u"3F2504E0-4F89-11D3-9A0C-0305E82C3301"_s};

    LaunchItems items_ = numberedApps(80);
    int page_ = 0;
    double scrollOffset_ = 0;
    bool isSearching_ = false;
    std::optional<QUuid> openFolderID_;
    DragSession session_;
    QPointF start_;
    QPointF pointer_;
};

} // namespace

// --- Press, tap and the beginning of a drag

TEST_F(DragSessionTest, APressAndReleaseIsATap) {
    EXPECT_EQ(press(icon(3)), "press a:3");
    EXPECT_EQ(release(), "tap a:3; press none");
    EXPECT_EQ(press({10, 10}), "");
    EXPECT_EQ(release(), "tap nothing; press none");
}

TEST_F(DragSessionTest, AReleaseWithoutAPressIsNoTap) {
    EXPECT_EQ(release(), "press none");
}

TEST_F(DragSessionTest, ATravelOfSixPointsIsATapAndMoreIsADrag) {
    for (const auto& [offset, isTap] : {std::pair{QPointF(6, 0), true},
                                        {QPointF(0, -6), true},
                                        {QPointF(3, 5), true},
                                        {QPointF(6.01, 0), false},
                                        {QPointF(4.3, 4.3), false}}) {
        session_ = {};
        press(icon(3));
        const std::string moved = moveTo(icon(3) + offset);
        EXPECT_EQ(moved.empty(), isTap) << moved;
        EXPECT_EQ(release().starts_with("tap"), isTap);
    }
}

TEST_F(DragSessionTest, ADragBeginsAndThenMoves) {
    press(icon(3));
    EXPECT_EQ(moveTo(icon(3) + QPointF(7, 0)),
              "drag a:3; press none; stop scrolling; pointer 757,178 | pointer 757,178");
    EXPECT_EQ(moveTo(icon(3) + QPointF(8, 0)), "pointer 758,178");
}

TEST_F(DragSessionTest, TheGrabOffsetIsThePointersFromTheIconsCentre) {
    page_ = 1;
    scrollOffset_ = -30;
    press(icon(3) + QPointF(-30 + 10, 20));
    const auto actions = session_.pointerChanged({start_, start_ + QPointF(7, 0)}, scene());
    const auto& begun = std::get<DragSession::SetDrag>(actions[0]).drag;
    ASSERT_TRUE(begun);
    EXPECT_EQ(*begun, (DragInfo{u"a:38"_s, items_[38], std::nullopt, {10, 20}, false}));
}

TEST_F(DragSessionTest, EmptySpaceIsNotDragged) {
    press({10, 10});
    EXPECT_EQ(moveTo({300, 300}), "");
    EXPECT_EQ(release(), "press none");
}

TEST_F(DragSessionTest, AnItemThatIsGoneByThenIsNotDragged) {
    press(icon(3));
    items_ = numberedApps(3);
    EXPECT_EQ(moveTo(icon(5)), "");
}

TEST_F(DragSessionTest, ASearchResultIsNotDragged) {
    isSearching_ = true;
    press(icon(3));
    EXPECT_EQ(moveTo(icon(5)), "press none");
    EXPECT_EQ(release(), "press none");
}

// --- Intents

TEST_F(DragSessionTest, EachPlaceHasItsIntentAndItsRest) {
    struct Row {
        int page;
        QPointF place;
        std::string started;
        std::string fired;
    };
    const Row rows[] = {
        {0, icon(5), "timer 0.18", "mark a:5"},
        {0, beside(5), "timer 0.35", "move a:3 to 5"},
        {2, icon(20), "timer 0.3", "move a:3 to 79"},
        {0, {1470, 400}, "timer 0.65", "page 1"},
        {1, {30, 400}, "timer 0.65", "page 0"},
        {0, {30, 400}, "", ""},
        {0, {750, 60}, "", ""},
        {0, beside(3), "", ""},
    };
    for (const Row& row : rows) {
        session_ = {};
        page_ = 0;
        lift(3);
        page_ = row.page;
        const std::string pointer = "pointer " + textOf(row.place).toStdString();
        EXPECT_EQ(moveTo(row.place), pointer + (row.started.empty() ? "" : "; " + row.started));
        EXPECT_EQ(session_.pendingKey().isEmpty(), row.started.empty());
        EXPECT_EQ(timer(), row.fired);
        EXPECT_EQ(session_.pendingKey(), QString());
        EXPECT_EQ(timer(), "") << "once only";
    }
}

TEST_F(DragSessionTest, TheSameIntentKeepsItsTimerAndAnotherOneReplacesIt) {
    lift(3);
    EXPECT_EQ(moveTo(beside(5)), "pointer 1180,178; timer 0.35");
    EXPECT_EQ(moveTo(beside(5) + QPointF(1, 0)), "pointer 1181,178");
    EXPECT_EQ(session_.pendingKey(), u"move:5"_s);
    EXPECT_EQ(moveTo(beside(4)), "pointer 1000,178; timer 0.35");
    EXPECT_EQ(timer(), "move a:3 to 4");
}

TEST_F(DragSessionTest, OverItsOwnSlotNothingIsPending) {
    lift(3);
    moveTo(beside(5));
    EXPECT_EQ(moveTo(icon(3)), "pointer 750,178; stop timer");
    EXPECT_EQ(session_.pendingKey(), QString());
}

TEST_F(DragSessionTest, APendingIntentCanBeCancelled) {
    lift(3);
    EXPECT_EQ(text(session_.cancelPending()), "");
    moveTo(beside(5));
    EXPECT_EQ(text(session_.cancelPending()), "stop timer");
    EXPECT_EQ(timer(), "");
}

TEST_F(DragSessionTest, AMarkedTargetStaysMarkedWithinTheHoldRadius) {
    lift(3);
    moveTo(icon(5));
    timer();
    EXPECT_EQ(moveTo(icon(5) + QPointF(78.8, 0)), "pointer 1188.8,178");
    EXPECT_EQ(moveTo(icon(5) + QPointF(78.9, 0)), "pointer 1188.9,178; mark none; timer 0.35");
}

TEST_F(DragSessionTest, AfterTheLayoutHasChangedItemsAreWhereTheyStandNow) {
    lift(3);
    moveTo(beside(5));
    ASSERT_EQ(timer(), "move a:3 to 5");
    items_ = {items_[0], items_[1], items_[2], items_[4], items_[5], items_[3], items_[6]};
    EXPECT_EQ(moveTo(beside(5)), "pointer 1180,178") << "its own slot now";
    EXPECT_EQ(moveTo(icon(0)), "pointer 210,178; timer 0.18");
    EXPECT_EQ(timer(), "mark a:0");
    items_ = numberedApps(80); // the dragged item far away, the target the first
    page_ = 2;
    std::swap(items_[3], items_[75]);
    EXPECT_EQ(moveTo(beside(5)), "pointer 1180,178; mark none");
}

// --- The drop

TEST_F(DragSessionTest, WhatADropDoes) {
    struct Row {
        const char* what;
        int slot; // of the dragged item; the folder is in slot 6
        QPointF place;
        bool rests;
        int page;
        std::string dropped;
    };
    const Row rows[] = {
        {"an application near another one makes a folder with it", 3, icon(5) + QPointF(55, 0), false, 0,
         "stop timer; drag none; merge a:3 into a:5; save; deferred; press none"},
        {"the same where it is marked", 3, icon(5), true, 0,
         "mark none; drag none; merge a:3 into a:5; save; deferred; press none"},
        {"an application near a folder joins it", 3, icon(6), false, 0,
         "stop timer; drag none; merge a:3 into f:3F2504E0-4F89-11D3-9A0C-0305E82C3301; save; deferred; "
         "press none"},
        {"further away it glides back", 3, icon(5) + QPointF(56, 0), false, 0,
         "stop timer; save; glide a:3 to 750,178; press none"},
        {"over its own slot too", 3, beside(3), false, 0, "save; glide a:3 to 750,178; press none"},
        {"a folder merges with nothing", 6, icon(5), false, 0,
         "stop timer; save; glide f:3F2504E0-4F89-11D3-9A0C-0305E82C3301 to 1290,178; press none"},
        {"an item of another page ends at once",
         3,
         {750, 60},
         false,
         1,
         "save; drag none; deferred; press none"},
    };
    items_[6] = LaunchItem::folder({folderID, u"Games"_s, {u"x"_s, u"y"_s}});
    for (const Row& row : rows) {
        session_ = {};
        page_ = 0;
        lift(row.slot);
        page_ = row.page;
        moveTo(row.place);
        if (row.rests) {
            timer();
        }
        EXPECT_EQ(release(), row.dropped) << row.what;
        EXPECT_EQ(session_.pendingKey(), QString());
    }
}

TEST_F(DragSessionTest, AMarkedTargetIsMergedWithFromBeyondTheMergeRadius) {
    lift(3);
    moveTo(icon(5));
    timer();
    moveTo(icon(5) + QPointF(70, 0));
    EXPECT_EQ(release(), "mark none; drag none; merge a:3 into a:5; save; deferred; press none");
}

TEST_F(DragSessionTest, AnItemThatIsGoneEndsTheDragAtOnce) {
    lift(3);
    items_ = numberedApps(3);
    EXPECT_EQ(moveTo(beside(1)), "pointer 460,178");
    EXPECT_EQ(release(), "save; drag none; deferred; press none");
}

TEST_F(DragSessionTest, TheDragEndsWithItsGlide) {
    lift(3);
    moveTo(beside(5));
    release();
    EXPECT_EQ(text(session_.glideEnded()), "drag none; deferred");
    EXPECT_EQ(text(session_.glideEnded()), "");
}

TEST_F(DragSessionTest, AGestureDuringTheGlideLeavesTheGlideAlone) {
    lift(3);
    moveTo(beside(5));
    release();
    EXPECT_EQ(press(icon(7)), "press a:7");
    EXPECT_EQ(moveTo(icon(9)), "");
    EXPECT_EQ(release(), "press none");
    EXPECT_EQ(text(session_.glideEnded()), "drag none; deferred");
}

TEST_F(DragSessionTest, APressDuringTheGlideBecomesADragAfterIt) {
    lift(3);
    release();
    press(icon(7));
    text(session_.glideEnded());
    EXPECT_TRUE(moveTo(icon(7) + QPointF(7, 0)).starts_with("drag a:7"));
}

// --- Gestures that are taken away

TEST_F(DragSessionTest, ACancelledPressIsNoTap) {
    press(icon(3));
    EXPECT_EQ(cancel(), "press none");
    EXPECT_EQ(release(), "press none");
}

TEST_F(DragSessionTest, ACancelledDragEndsWhereItIsAndSaves) {
    lift(3);
    moveTo(icon(5));
    EXPECT_EQ(cancel(), "stop timer; stop glide; save; drag none; deferred; press none");
    session_ = {};
    lift(3);
    moveTo(icon(5));
    timer();
    EXPECT_EQ(cancel(), "stop glide; mark none; save; drag none; deferred; press none");
}

TEST_F(DragSessionTest, ACancelledGlideHasBeenSavedAlready) {
    lift(3);
    release();
    EXPECT_EQ(cancel(), "stop glide; drag none; deferred; press none");
}

TEST_F(DragSessionTest, TheRestOfACancelledGestureIsIgnored) {
    lift(3);
    cancel();
    EXPECT_EQ(moveTo(icon(5)), "");
    EXPECT_EQ(release(), "press none");
    EXPECT_EQ(press(icon(5)), "press a:5");
}

TEST_F(DragSessionTest, TheNextPressCountsEvenIfTheCancelledGestureNeverEnded) {
    lift(3);
    cancel();
    EXPECT_EQ(press(icon(5)), "press a:5");
}

// --- In a folder's panel

namespace {

// A folder of nine applications "p0" … "p8" in slot 6, open: two rows of cells.
class FolderDragSession : public DragSessionTest {
protected:
    void SetUp() override {
        Folder folder{folderID, u"Games"_s, {}};
        for (int number = 0; number < 9; ++number) {
            folder.apps.append(u"p%1"_s.arg(number));
        }
        items_[6] = LaunchItem::folder(folder);
        openFolderID_ = folderID;
    }

    const FolderMetrics panel_ = FolderMetrics::of(9, grid);
};

} // namespace

TEST_F(FolderDragSession, ADragBeginsInThePanel) {
    EXPECT_EQ(press(panel_.cellCenter(4)), "press a:p4");
    EXPECT_TRUE(moveTo(panel_.cellCenter(4) + QPointF(7, 0)).starts_with("drag a:p4 in folder; press none"));
    EXPECT_TRUE(moveTo(panel_.cellCenter(2)).ends_with("; timer 0.12"));
    EXPECT_EQ(timer(), "move p4 in folder to 2");
    EXPECT_TRUE(moveTo(panel_.cellCenter(2)).ends_with("; timer 0.12")) << "nobody has moved it";
    EXPECT_TRUE(moveTo(panel_.cellCenter(4)).ends_with("; stop timer"));
}

TEST_F(FolderDragSession, ADropGlidesToTheCell) {
    press(iconCenter(panel_, 4));
    moveTo(panel_.cellCenter(2));
    EXPECT_EQ(release(), "stop timer; save; glide a:p4 to " + textOf(iconCenter(panel_, 4)).toStdString() +
                             "; press none");
}

TEST_F(FolderDragSession, LeavingThePanelPullsTheApplicationOutAndGoesOnOnThePage) {
    press(panel_.cellCenter(4));
    moveTo(panel_.cellCenter(2));
    EXPECT_EQ(moveTo({750, 20}), "pointer 750,20; stop timer; pull out p4");
    openFolderID_.reset();
    items_.insert(items_.begin() + 7, LaunchItem::app(u"p4"_s));
    EXPECT_EQ(text(session_.pulledOut(7)), "drag a:p4");
    EXPECT_TRUE(moveTo(beside(2)).ends_with("; timer 0.35"));
    EXPECT_EQ(timer(), "move a:p4 to 2");
}

TEST_F(FolderDragSession, OneMoveOutOfThePanelBeginsTheDragAndGoesOnOnThePage) {
    press(panel_.cellCenter(4));
    const auto begun = session_.pointerChanged({start_, {750, 20}}, scene());
    EXPECT_TRUE(text(begun).ends_with("; pull out p4")) << text(begun);
    openFolderID_.reset();
    items_.insert(items_.begin() + 7, LaunchItem::app(u"p4"_s));
    text(session_.pulledOut(7));
    EXPECT_EQ(text(session_.dragMoved({1470, 400}, scene())), "pointer 1470,400; timer 0.65");
}

TEST_F(FolderDragSession, AFolderThatIsGoneEndsTheDragAtOnce) {
    press(panel_.cellCenter(4));
    moveTo(panel_.cellCenter(2));
    items_ = numberedApps(3);
    EXPECT_EQ(moveTo(panel_.cellCenter(3)), "pointer " + textOf(panel_.cellCenter(3)).toStdString());
    EXPECT_EQ(release(), "stop timer; save; drag none; deferred; press none");
}

TEST_F(FolderDragSession, PulledOutWithoutADragChangesNothing) {
    EXPECT_EQ(text(session_.pulledOut(7)), "");
}
