#pragma once

#include "motion/Animation.h"

namespace amberquill::motion {

// Every animation of the launcher.
inline constexpr Animation show = spring(0.35, 0.9);
inline constexpr Animation hide = easeIn(0.15);
inline constexpr Animation windowFadeIn = easeBoth(0.2);
inline constexpr Animation windowFadeOut = easeBoth(0.15);
inline constexpr Animation page = spring(0.42, 0.86);
inline constexpr Animation replaceLayout = spring(0.4, 0.85);
inline constexpr Animation openFolder = spring(0.34, 0.86);
inline constexpr Animation closeFolder = easeOut(0.2);
inline constexpr Animation move = spring(0.32, 0.82);
inline constexpr Animation merge = spring(0.35, 0.8);
inline constexpr Animation pullOut = spring(0.35, 0.85);
inline constexpr Animation mergeTarget = spring(0.25, 0.7);
inline constexpr Animation dropGlide = easeOut(0.18);

// For fades with reduced motion; positions jump then.
inline constexpr Animation reducedFade = easeOut(0.12);

} // namespace amberquill::motion
