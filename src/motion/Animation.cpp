#include "motion/Animation.h"

#include <QEasingCurve>
#include <QPointF>
#include <QScopedValueRollback>

namespace amberquill {

namespace {

QEasingCurve bezier(const QPointF& first, const QPointF& second) {
    QEasingCurve curve(QEasingCurve::BezierSpline);
    curve.addCubicBezierSegment(first, second, {1, 1});
    return curve;
}

std::optional<Animation>& current() {
    static std::optional<Animation> theCurrent;
    return theCurrent;
}

} // namespace

double easeProgress(Animation::Curve curve, double part) {
    static const QEasingCurve in = bezier({0.42, 0}, {1, 1});
    static const QEasingCurve out = bezier({0, 0}, {0.58, 1});
    static const QEasingCurve both = bezier({0.25, 0.1}, {0.25, 1});
    switch (curve) {
    case Animation::Curve::EaseIn:
        return in.valueForProgress(part);
    case Animation::Curve::EaseOut:
        return out.valueForProgress(part);
    case Animation::Curve::EaseBoth:
        return both.valueForProgress(part);
    case Animation::Curve::Spring:
        break;
    }
    return part;
}

void withAnimation(const Animation& animation, const std::function<void()>& change) {
    const QScopedValueRollback<std::optional<Animation>> restore(current(), animation);
    change();
}

std::optional<Animation> currentAnimation() {
    return current();
}

} // namespace amberquill
