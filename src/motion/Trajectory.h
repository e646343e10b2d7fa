#pragma once

#include "motion/Animation.h"

namespace amberquill {

// One number on its way to a target. A spring is solved in closed form: where it is depends on the time alone
// and not on how often it is looked at. Times are seconds on the main queue's clock.
class Trajectory {
public:
    explicit Trajectory(double value = 0)
        : target_(value)
        , value_(value) {}

    [[nodiscard]] double target() const { return target_; }
    [[nodiscard]] double value() const { return value_; }
    [[nodiscard]] double velocity() const { return velocity_; } // per second
    [[nodiscard]] bool isMoving() const { return moving_; }

    // At `target` at once.
    void jump(double target);

    // On its way to `target` from where it is; a spring goes on with the speed it has.
    void travel(double target, const Animation& animation, double now);

    // Where it is at `now`. It rests, exactly at its target, as soon as it can no longer get further from it
    // than `precision` (in the value's own unit).
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
    bool seen_ = true; // since it set off
};

} // namespace amberquill
