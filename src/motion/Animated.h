#pragma once

#include "motion/Timeline.h"
#include "motion/Trajectory.h"

#include <QObject>
#include <QPointF>
#include <optional>

namespace amberquill {

// A number that follows its target. When the target changes inside `withAnimation`, the value moves on that
// animation; outside, it jumps. Views bind to `value`. The value starts at the first target.
class Animated : public QObject, private Moving {
    Q_OBJECT
    Q_PROPERTY(double target READ target WRITE setTarget NOTIFY targetChanged FINAL)
    Q_PROPERTY(double value READ value NOTIFY valueChanged FINAL)
    // A spring ends within this distance of its target, in the value's unit; for positions half a device
    // pixel.
    Q_PROPERTY(double precision READ precision WRITE setPrecision NOTIFY precisionChanged FINAL)
    // An opacity. With reduced motion it still fades, but quickly, while other values jump. It becomes
    // exactly its target when the difference is invisible: Qt's software renderer ignores a change of opacity
    // below a hundred-thousandth, and would never become fully opaque.
    Q_PROPERTY(bool isFade READ isFade WRITE setIsFade NOTIFY isFadeChanged FINAL)
    Q_PROPERTY(bool isMoving READ isMoving NOTIFY isMovingChanged FINAL)

public:
    explicit Animated(QObject* parent = nullptr)
        : QObject(parent) {}

    [[nodiscard]] double target() const { return trajectory_.target(); }
    void setTarget(double target);
    // Sets the value to `target` at once and ends a motion.
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

// A position that follows its target, as `Animated` does for a number.
class AnimatedPoint : public QObject, private Moving {
    Q_OBJECT
    Q_PROPERTY(QPointF target READ target WRITE setTarget NOTIFY targetChanged FINAL)
    Q_PROPERTY(QPointF value READ value NOTIFY valueChanged FINAL)
    // A spring ends within this distance of its target, in points: half a device pixel.
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
