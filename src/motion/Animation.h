// motion/: how visible state changes travel. A change made inside `withAnimation` carries its animation to
// every `Animated` that it reaches; nothing else starts a motion.
#pragma once

#include <functional>
#include <optional>

namespace amberquill {

// How a value gets from where it is to where it should be.
struct Animation {
    enum class Curve {
        Spring,   // by response and damping; keeps the speed it is interrupted at
        EaseIn,   // starts slowly
        EaseOut,  // ends slowly
        EaseBoth, // starts softly, ends slowly: what window fades use
    };

    Curve curve = Curve::Spring;
    double seconds = 0;         // a spring's response (its undamped period), or the whole time of an ease
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

// How far an ease has come (0 … 1) after a part (0 … 1) of its time.
double easeProgress(Animation::Curve curve, double part);

// Runs `change`: every value that it changes moves on `animation`. Calls nest, the inner one counts. Main
// thread only.
void withAnimation(const Animation& animation, const std::function<void()>& change);

// The animation of the innermost `withAnimation` that is running; none outside, where values jump.
std::optional<Animation> currentAnimation();

} // namespace amberquill
