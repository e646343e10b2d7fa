#include "motion/Retarget.h"

#include "motion/Animations.h"
#include "motion/Timeline.h"
#include "motion/Trajectory.h"
#include "motion/WithAnimation.h"

namespace amberquill {

std::optional<Animation> animationToFollow(bool isFade) {
    const Timeline& timeline = Timeline::shared();
    const std::optional<Animation> animation = currentAnimation();
    if (!animation || !timeline.isRunning()) {
        return std::nullopt;
    }
    if (!timeline.isReduced()) {
        return animation;
    }
    return isFade ? std::optional(motion::reducedFade) : std::nullopt;
}

void retarget(Trajectory& trajectory, double target, const std::optional<Animation>& animation) {
    if (!animation) {
        trajectory.jump(target);
        return;
    }
    trajectory.travel(target, *animation, Timeline::shared().now());
}

} // namespace amberquill
