#include "motion/Animated.h"

#include "motion/Retarget.h"

#include <cmath>

namespace amberquill {

namespace {

constexpr double unseenPart = 1e-4; // of an opacity

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
        return false; // a jump has ended it since the last frame
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

} // namespace amberquill
