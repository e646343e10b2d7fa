#include "motion/Trajectory.h"

#include <algorithm>
#include <cmath>
#include <numbers>

namespace amberquill {

namespace {

// When the program is busy at the start of a motion (as before the first frame), the motion's first visible
// step is at most this long.
constexpr double longestFirstStep = 1.0 / 60;

struct SpringState {
    double offset;
    double velocity;
    double furthest; // the offset's bound from now on
};

// The damped oscillator  x'' + 2ζω x' + ω² x = 0  from an offset and a velocity, after `time`.
SpringState springAfter(double time, double offset, double velocity, double response,
                        double dampingFraction) {
    const double omega = 2 * std::numbers::pi / response;
    const double decay = dampingFraction * omega;
    constexpr double nearlyCritical = 1e-6;
    if (dampingFraction < 1 - nearlyCritical) {
        const double frequency = omega * std::sqrt(1 - dampingFraction * dampingFraction);
        const double sine = (velocity + decay * offset) / frequency;
        const double envelope = std::exp(-decay * time);
        const double c = std::cos(frequency * time);
        const double s = std::sin(frequency * time);
        const double position = envelope * (offset * c + sine * s);
        return {position, envelope * frequency * (sine * c - offset * s) - decay * position,
                envelope * std::hypot(offset, sine)};
    }
    if (dampingFraction <= 1 + nearlyCritical) {
        const double slope = velocity + omega * offset;
        const double envelope = std::exp(-omega * time);
        const double position = envelope * (offset + slope * time);
        return {position, envelope * slope - omega * position,
                envelope * (std::abs(offset) + std::abs(slope) * (time + 1 / omega))};
    }
    const double root = omega * std::sqrt(dampingFraction * dampingFraction - 1);
    const double slow = -decay + root;
    const double fast = -decay - root;
    const double fastPart = (velocity - slow * offset) / (fast - slow);
    const double slowPart = offset - fastPart;
    const double slowNow = slowPart * std::exp(slow * time);
    const double fastNow = fastPart * std::exp(fast * time);
    return {slowNow + fastNow, slow * slowNow + fast * fastNow, std::abs(slowNow) + std::abs(fastNow)};
}

} // namespace

void Trajectory::jump(double target) {
    target_ = target;
    value_ = target;
    velocity_ = 0;
    moving_ = false;
}

void Trajectory::travel(double target, const Animation& animation, double now) {
    target_ = target;
    if (animation.seconds <= 0 || (value_ == target && velocity_ == 0)) {
        jump(target);
        return;
    }
    animation_ = animation;
    startTime_ = now;
    startOffset_ = value_ - target;
    startVelocity_ = velocity_;
    moving_ = true;
    hasAdvanced_ = false;
}

void Trajectory::advance(double now, double precision) {
    if (!moving_) {
        return;
    }
    if (!hasAdvanced_ && now > startTime_) {
        startTime_ = std::max(startTime_, now - longestFirstStep);
        hasAdvanced_ = true;
    }
    const double elapsed = std::max(now - startTime_, 0.0);
    if (animation_.curve == Animation::Curve::Spring) {
        followSpring(elapsed, precision);
    } else {
        followEase(elapsed);
    }
}

void Trajectory::followSpring(double elapsed, double precision) {
    const SpringState state =
        springAfter(elapsed, startOffset_, startVelocity_, animation_.seconds, animation_.dampingFraction);
    if (state.furthest < precision) {
        jump(target_);
        return;
    }
    value_ = target_ + state.offset;
    velocity_ = state.velocity;
}

void Trajectory::followEase(double elapsed) {
    const double part = elapsed / animation_.seconds;
    if (part >= 1) {
        jump(target_);
        return;
    }
    value_ = target_ + startOffset_ * (1 - easeProgress(animation_.curve, part));
    // The velocity for a spring that interrupts this ease.
    constexpr double step = 1e-4;
    const double next =
        target_ + startOffset_ * (1 - easeProgress(animation_.curve, std::min(part + step, 1.0)));
    velocity_ = (next - value_) / (step * animation_.seconds);
}

} // namespace amberquill
