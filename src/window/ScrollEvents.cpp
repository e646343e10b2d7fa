#include "window/ScrollEvents.h"

#include <QWheelEvent>

namespace amberquill {

namespace {

// Qt counts a notch as fifteen degrees, in eighths of a degree.
constexpr double angleOfNotch = 120;

ScrollEvent::Phase phaseOf(Qt::ScrollPhase phase) {
    switch (phase) {
    case Qt::ScrollBegin:
        return ScrollEvent::Phase::Began;
    case Qt::ScrollUpdate:
        return ScrollEvent::Phase::Changed;
    case Qt::ScrollEnd:
        return ScrollEvent::Phase::Ended;
    default:
        return ScrollEvent::Phase::None;
    }
}

} // namespace

ScrollEvent scrollEvent(const QWheelEvent& event) {
    if (event.phase() == Qt::NoScrollPhase) {
        return {QPointF(event.angleDelta()) / angleOfNotch, false, ScrollEvent::Phase::None, false};
    }
    return {QPointF(event.pixelDelta()), true, phaseOf(event.phase()), event.phase() == Qt::ScrollMomentum};
}

} // namespace amberquill
