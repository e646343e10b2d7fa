#include "motion/Animated.h"

#include "motion/Animations.h"

#include <cmath>

namespace amberquill {

namespace {

constexpr double unseenPart = 1e-4; // of an opacity's target

// The animation that a change of a target follows now; none: the value jumps. With reduced motion only fades
// are animated.
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

// Sends a value to `target`, beginning now.
void retarget(Trajectory& trajectory, double target, const std::optional<Animation>& animation) {
    if (!animation) {
        trajectory.jump(target);
        return;
    }
    trajectory.travel(target, *animation, Timeline::shared().now());
}

} // namespace

double Animated::value() const {
    const double value = trajectory_.value();
    return isFade_ && std::abs(value - target()) < unseenPart * target() ? target() : value;
}

void Animated::setTarget(double target) {
    if (!hasTarget_ || target != trajectory_.target()) {
        go(target, hasTarget_ ? animationToFollow(isFade_) : std::nullopt);
    }
}

void Animated::jumpTo(double target) {
    go(target, std::nullopt);
}

void Animated::go(double target, const std::optional<Animation>& animation) {
    const bool wasMoving = trajectory_.isMoving();
    const double before = value();
    retarget(trajectory_, target, animation);
    hasTarget_ = true;
    Q_EMIT targetChanged();
    if (value() != before) {
        Q_EMIT valueChanged();
    }
    if (trajectory_.isMoving()) {
        Timeline::shared().add(*this);
    }
    if (trajectory_.isMoving() != wasMoving) {
        Q_EMIT isMovingChanged();
    }
}

void Animated::setPrecision(double precision) {
    if (precision != precision_) {
        precision_ = precision;
        Q_EMIT precisionChanged();
    }
}

void Animated::setIsFade(bool isFade) {
    if (isFade != isFade_) {
        isFade_ = isFade;
        Q_EMIT isFadeChanged();
    }
}

bool Animated::advance(double now) {
    if (!isMoving()) {
        return false; // a jump has ended the motion since the last frame
    }
    const double before = value();
    trajectory_.advance(now, precision_);
    const bool moving = trajectory_.isMoving();
    if (value() != before) {
        Q_EMIT valueChanged();
    }
    if (!moving) {
        Q_EMIT isMovingChanged();
    }
    return trajectory_.isMoving();
}

void AnimatedPoint::setTarget(const QPointF& target) {
    if (hasTarget_ && target == this->target()) {
        return;
    }
    const bool wasMoving = isMoving();
    const QPointF before = value();
    const auto animation = hasTarget_ ? animationToFollow(false) : std::nullopt;
    retarget(x_, target.x(), animation);
    retarget(y_, target.y(), animation);
    hasTarget_ = true;
    Q_EMIT targetChanged();
    if (value() != before) {
        Q_EMIT valueChanged();
    }
    if (isMoving()) {
        Timeline::shared().add(*this);
    }
    if (isMoving() != wasMoving) {
        Q_EMIT isMovingChanged();
    }
}

void AnimatedPoint::setPrecision(double precision) {
    if (precision != precision_) {
        precision_ = precision;
        Q_EMIT precisionChanged();
    }
}

bool AnimatedPoint::advance(double now) {
    if (!isMoving()) {
        return false; // a jump has ended the motion since the last frame
    }
    const QPointF before = value();
    x_.advance(now, precision_);
    y_.advance(now, precision_);
    const bool moving = isMoving();
    if (value() != before) {
        Q_EMIT valueChanged();
    }
    if (!moving) {
        Q_EMIT isMovingChanged();
    }
    return isMoving();
}

} // namespace amberquill
