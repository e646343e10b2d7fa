#include "model/DragTracker.h"

#include <QSignalSpy>
#include <gtest/gtest.h>

using namespace amberquill;

TEST(DragTracker, TellsOfANewLocationOnly) {
    DragTracker tracker;
    QSignalSpy told(&tracker, &DragTracker::locationChanged);
    tracker.setLocation({1, 2});
    EXPECT_EQ(tracker.location(), QPointF(1, 2));
    EXPECT_EQ(told.count(), 1);
    tracker.setLocation({1, 2});
    EXPECT_EQ(told.count(), 1);
}
