#pragma once

#include "motion/Timeline.h"
#include "motion/Trajectory.h"

#include <QObject>
#include <QPointF>

namespace amberquill {

// A position that follows its target as Animated's number does.
class AnimatedPoint : public QObject, private Moving {
    Q_OBJECT
    Q_PROPERTY(QPointF target READ target WRITE setTarget NOTIFY targetChanged FINAL)
    Q_PROPERTY(QPointF value READ value NOTIFY valueChanged FINAL)
    // How close to its target a spring may end, in points: half a device pixel.
    Q_PROPERTY(double precision READ precision WRITE setPrecision NOTIFY precisionChanged FINAL)
    Q_PROPERTY(bool isMoving READ isMoving NOTIFY isMovingChanged FINAL)

public:
    explicit AnimatedPoint(QObject* parent = nullptr)
        : QObject(parent) {}

    [[nodiscard]] QPointF target() const { return {x_.target(), y_.target()}; }
    void setTarget(const QPointF& target);
    [[nodiscard]] QPointF value() const { return {x_.value(), y_.value()}; }
    [[nodiscard]] double precision() const { return precision_; }
    void setPrecision(double precision);
    [[nodiscard]] bool isMoving() const { return x_.isMoving() || y_.isMoving(); }

Q_SIGNALS:
    void targetChanged();
    void valueChanged();
    void precisionChanged();
    void isMovingChanged();

private:
    bool advance(double now) override;

    Trajectory x_;
    Trajectory y_;
    double precision_ = 0.5;
    bool hasTarget_ = false;
};

} // namespace amberquill
