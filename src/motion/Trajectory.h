#pragma once

#include "motion/Animation.h"

namespace amberquill {

// The motion of a number to a target. A spring is solved in closed form: its value depends only on the time,
// not on the number of calls. Times are seconds of the main queue's clock.
class Trajectory {
public:
    explicit Trajectory(double value = 0)
        : target_(value)
        , value_(value) {}

    [[nodiscard]] double target() const { return target_; }
    [[nodiscard]] double value() const { return value_; }
    [[nodiscard]] double velocity() const { return velocity_; } // per second
    [[nodiscard]] bool isMoving() const { return moving_; }

    // Sets the value to `target` at once.
    void jump(double target);

    // Moves to `target` from the current value; a spring keeps the current velocity.
    void travel(double target, const Animation& animation, double now);

    // Advances to `now`. The motion ends, exactly at the target, when the value can no longer differ from the
    // target by `precision` (in the value's unit).
    void advance(double now, double precision);

private:
    void followSpring(double elapsed, double precision);
    void followEase(double elapsed);

    double target_;
    double value_;
    double velocity_ = 0;
    Animation animation_;
    double startTime_ = 0;
    double startOffset_ = 0; // from the target
    double startVelocity_ = 0;
    bool moving_ = false;
    bool hasAdvanced_ = true; // advanced since its start
};

} // namespace amberquill
