#include "motion/AnimatedPoint.h"

#include "motion/Retarget.h"

namespace amberquill {

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
        return false; // a jump has ended it since the last frame
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
