#pragma once

#include "motion/Animation.h"

#include <optional>

namespace amberquill {

class Trajectory;

// The animation that a change made now sets a value in motion on, or none when it jumps: outside
// `withAnimation`, and for all but fades where less motion is wanted.
std::optional<Animation> animationToFollow(bool isFade);

// Sends a value to `target` from the present on.
void retarget(Trajectory& trajectory, double target, const std::optional<Animation>& animation);

} // namespace amberquill
