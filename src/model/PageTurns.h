#pragma once

#include <QPointF>

namespace amberquill {

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
