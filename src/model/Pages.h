#pragma once

#include "data/GridMetrics.h"
#include "data/LaunchItem.h"

#include <QPointF>
#include <cstddef>
#include <vector>

// The pages: how many there are, what they show, and how wheel and touchpad turn them.
namespace amberquill {

// An item and its position on the screen.
struct VisibleEntry {
    LaunchItem item;
    QPointF center; // of its cell, in the launcher's content
    int index = 0;  // in the displayed list

    bool operator==(const VisibleEntry&) const = default;
};

// At least 1.
int pageCount(std::size_t itemCount, int slotsPerPage);

// The items of the current page and its two neighbours, by page and then by slot. The time depends on the
// size of a page, not on the number of items.
std::vector<VisibleEntry> visibleEntries(const LaunchItems& items, const GridMetrics& metrics, int page,
                                         double scrollOffset);

// A wheel or touchpad event.
struct ScrollEvent {
    enum class Phase { None, MayBegin, Began, Changed, Ended, Cancelled };

    QPointF delta;        // a wheel's notch is 1, a touchpad's unit is a point; down and right are negative
    bool precise = false; // from a touchpad
    Phase phase = Phase::None;
    bool momentum = false; // sent by the touchpad after the fingers have left
};

// How wheel and touchpad turn pages. Keeps only the sum of the running swipe and the time of the last notch.
class PageTurns {
public:
    // The page that a notch of the wheel at `now` (seconds) leads to, or `page`. At most one page is turned
    // every 0.3 s.
    int wheel(const QPointF& delta, int page, double now);

    void begin() { swipe_ = {}; }

    // The pages' offset in points while the fingers move. Past the first and last page it grows more slowly.
    double move(const QPointF& delta, int page, int pageCount);

    // The page to show when the fingers leave.
    int end(int page);

private:
    QPointF swipe_; // the sum of the touchpad's deltas
    double lastWheelPage_ = -1e9;
};

} // namespace amberquill
