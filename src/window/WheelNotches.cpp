#include "window/WheelNotches.h"

#include <cmath>

namespace amberquill {

namespace {

// A notch is complete when nearly all of it has come: its fractions are cut to 120ths on their way, by which
// sixteen of them lose eight. What was lent is taken off the next notch.
constexpr double lent = 0.1;

} // namespace

double WheelNotches::Axis::add(double notches) {
    if (notches == 0) {
        return 0;
    }
    const bool nowForward = notches > 0;
    if (nowForward != forward) {
        fraction = 0;
        forward = nowForward;
    }
    fraction += notches;
    const double whole = std::trunc(fraction + std::copysign(lent, notches));
    // What was lent may leave a fraction against the direction, which is no notch back.
    if (whole * notches <= 0) {
        return 0;
    }
    fraction -= whole;
    return whole;
}

std::optional<QPointF> WheelNotches::add(const QPointF& notches, double now) {
    if (now - last_ > pause) {
        forget();
    }
    last_ = now;
    const QPointF whole(horizontal_.add(notches.x()), vertical_.add(notches.y()));
    return whole.isNull() ? std::nullopt : std::optional(whole);
}

} // namespace amberquill
