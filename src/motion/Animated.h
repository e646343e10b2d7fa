#pragma once

#include "motion/Timeline.h"
#include "motion/Trajectory.h"

#include <QObject>
#include <QPointF>
#include <optional>

namespace amberquill {

// A number that follows its target: at once when the target changes outside `withAnimation`, on that
// animation when it changes inside. Views bind what they draw to `value`. The first target is where it
// starts.
class Animated : public QObject, private Moving {
    Q_OBJECT
    Q_PROPERTY(double target READ target WRITE setTarget NOTIFY targetChanged FINAL)
    Q_PROPERTY(double value READ value NOTIFY valueChanged FINAL)
    // How close to its target a spring may end, in the value's unit: half a device pixel for positions.
    Q_PROPERTY(double precision READ precision WRITE setPrecision NOTIFY precisionChanged FINAL)
    // An opacity: where less motion is wanted it still fades, shortly, while everything else jumps. It is at
    // its target as soon as nobody sees the difference: Qt's software renderer takes two opacities that
    // differ by less than a hundred-thousandth of them for the same, and would stay a little short of opaque.
    Q_PROPERTY(bool isFade READ isFade WRITE setIsFade NOTIFY isFadeChanged FINAL)
    Q_PROPERTY(bool isMoving READ isMoving NOTIFY isMovingChanged FINAL)

public:
    explicit Animated(QObject* parent = nullptr)
        : QObject(parent) {}

    [[nodiscard]] double target() const { return trajectory_.target(); }
    void setTarget(double target);
    // At `target` at once, whatever it is doing.
    void jumpTo(double target);
    [[nodiscard]] double value() const;
    [[nodiscard]] double precision() const { return precision_; }
    void setPrecision(double precision);
    [[nodiscard]] bool isFade() const { return isFade_; }
    void setIsFade(bool isFade);
    [[nodiscard]] bool isMoving() const { return trajectory_.isMoving(); }

Q_SIGNALS:
    void targetChanged();
    void valueChanged();
    void precisionChanged();
    void isFadeChanged();
    void isMovingChanged();

private:
    bool advance(double now) override;
    void go(double target, const std::optional<Animation>& animation);

    Trajectory trajectory_;
    double precision_ = 0.002;
    bool isFade_ = false;
    bool hasTarget_ = false;
};

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
