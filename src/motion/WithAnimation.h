#pragma once

#include "motion/Animation.h"

#include <functional>
#include <optional>

namespace amberquill {

// Runs `change`; everything that moves because of it moves on `animation`. Calls nest, the inner one counts.
// Main thread only.
void withAnimation(const Animation& animation, const std::function<void()>& change);

// The animation that changes made now carry, or none: then what they move jumps.
std::optional<Animation> currentAnimation();

} // namespace amberquill
