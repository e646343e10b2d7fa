// motion/: animations of visible changes. A change inside `withAnimation` moves every `Animated` whose target
// it sets; nothing else starts a motion.
#pragma once

#include <functional>
#include <optional>

namespace amberquill {

// How a value moves to its target.
struct Animation {
    enum class Curve {
        Spring,   // by response and damping; an interrupted one keeps its speed
        EaseIn,   // starts slowly
        EaseOut,  // ends slowly
        EaseBoth, // starts softly and ends slowly; for window fades
    };

    Curve curve = Curve::Spring;
    double seconds = 0;         // a spring's response (its undamped period), or an ease's duration
    double dampingFraction = 1; // springs only; 1 does not overshoot

    bool operator==(const Animation&) const = default;
};

constexpr Animation spring(double response, double dampingFraction) {
    return {Animation::Curve::Spring, response, dampingFraction};
}

constexpr Animation easeIn(double seconds) {
    return {Animation::Curve::EaseIn, seconds, 1};
}

constexpr Animation easeOut(double seconds) {
    return {Animation::Curve::EaseOut, seconds, 1};
}

constexpr Animation easeBoth(double seconds) {
    return {Animation::Curve::EaseBoth, seconds, 1};
}

// The progress (0 … 1) of an ease after a part (0 … 1) of its duration.
double easeProgress(Animation::Curve curve, double part);

// Runs `change`: every value that it changes moves on `animation`. Calls nest, the inner one counts. Main
// thread only.
void withAnimation(const Animation& animation, const std::function<void()>& change);

// The animation of the innermost `withAnimation` that is running; none outside, where values jump.
std::optional<Animation> currentAnimation();

} // namespace amberquill
