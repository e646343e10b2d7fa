#pragma once

#include "data/GridMetrics.h"
#include "data/LaunchItem.h"

#include <QPointF>
#include <cstddef>
#include <vector>

// The pages: how many there are, what they show, and how wheel and touchpad turn them.
namespace amberquill {

// An item placed on a page for drawing.
struct VisibleEntry {
    LaunchItem item;
    QPointF center; // of its cell, in the launcher's content
    int index = 0;  // in the displayed list

    bool operator==(const VisibleEntry&) const = default;
};

// ⌈items ÷ slots⌉, at least 1: an empty layout has one page.
int pageCount(std::size_t itemCount, int slotsPerPage);

// The items of the page shown and of its two neighbours, in page order and then slot order. Takes time with
// the size of a page, not with the number of items.
std::vector<VisibleEntry> visibleEntries(const LaunchItems& items, const GridMetrics& metrics, int page,
                                         double scrollOffset);

// A movement of a wheel or on a touchpad.
struct ScrollEvent {
    enum class Phase { None, MayBegin, Began, Changed, Ended, Cancelled };

    QPointF delta;        // a wheel's notch is 1, a touchpad's unit is a point; down and right are negative
    bool precise = false; // from a touchpad
    Phase phase = Phase::None;
    bool momentum = false; // the touchpad goes on by itself after the fingers left
};

// How wheel and touchpad turn pages: pure but for what a gesture under way has gathered so far.
class PageTurns {
public:
    // The page to go to from `page` for a notch of the wheel at `now` (seconds), or the same page. At most
    // one page is turned every 0.3 s however fast the wheel is spun.
    int wheel(const QPointF& delta, int page, double now);

    void begin() { swipe_ = {}; }

    // The pages' offset while the fingers move, in points. Past either end the pages resist.
    double move(const QPointF& delta, int page, int pageCount);

    // The page to go to when the fingers leave.
    int end(int page);

private:
    QPointF swipe_; // what the touchpad's deltas have added up to
    double lastWheelPage_ = -1e9;
};

} // namespace amberquill
