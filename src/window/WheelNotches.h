#pragma once

#include <QPointF>
#include <optional>

namespace amberquill {

// Adds up what a wheel turns by to whole notches: a wheel of high resolution sends each notch in fractions.
class WheelNotches {
public:
    // Seconds without a turn after which a fraction counts no more.
    static constexpr double pause = 0.5;

    // The whole notches that are complete with a turn by `notches` at `now` (seconds), if any. On each axis a
    // change of direction drops the fraction gathered so far, and so does a pause.
    std::optional<QPointF> add(const QPointF& notches, double now);

    void forget() { *this = {}; }

private:
    // What an axis has turned by beyond its last whole notch.
    struct Axis {
        double fraction = 0;
        bool forward = false;

        double add(double notches);
    };

    Axis horizontal_;
    Axis vertical_;
    double last_ = -1e9;
};

} // namespace amberquill
