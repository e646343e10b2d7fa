#include "window/ScrollEvents.h"

#include <QLoggingCategory>
#include <QPointingDevice>
#include <QWheelEvent>
#include <cmath>

namespace amberquill {

namespace {

Q_LOGGING_CATEGORY(scrollLog, "amberquill.window", QtCriticalMsg)

// Qt counts a notch as fifteen degrees, in eighths of a degree.
constexpr double angleOfNotch = 120;

// A notch counts as complete when this much of it is missing: fractions are cut to 120ths on their way, so
// sixteen of them may lose eight 120ths. The next notch is shorter by what was lent.
constexpr double lent = 0.1;

QPointF notches(const QWheelEvent& event) {
    return QPointF(event.angleDelta()) / angleOfNotch;
}

ScrollEvent fingers(ScrollEvent::Phase phase, const QPointF& delta = {}) {
    return {delta, true, phase, false};
}

bool isOfTouchpad(const QWheelEvent& event, const ScrollDevice& device) {
    switch (device.kind) {
    case ScrollDevice::Kind::Wheel:
        return false;
    case ScrollDevice::Kind::Touchpad:
        return true;
    case ScrollDevice::Kind::Unknown:
        break;
    }
    return event.phase() != Qt::NoScrollPhase || !event.pixelDelta().isNull();
}

} // namespace

double WheelNotches::Axis::add(double notches) {
    if (notches == 0) {
        return 0;
    }
    const bool nowForward = notches > 0;
    if (nowForward != forward) {
        fraction = 0;
        forward = nowForward;
    }
    fraction += notches;
    const double whole = std::trunc(fraction + std::copysign(lent, notches));
    // A lent part leaves a fraction against the direction, which is not a notch back.
    if (whole * notches <= 0) {
        return 0;
    }
    fraction -= whole;
    return whole;
}

std::optional<QPointF> WheelNotches::add(const QPointF& notches, double now) {
    if (now - last_ > pause) {
        forget();
    }
    last_ = now;
    const QPointF whole(horizontal_.add(notches.x()), vertical_.add(notches.y()));
    return whole.isNull() ? std::nullopt : std::optional(whole);
}

ScrollEvents::ScrollEvents(MainQueue& queue, const ScrollDevices& devices, Handler handler)
    : queue_(queue)
    , devices_(devices)
    , handler_(std::move(handler)) {}

void ScrollEvents::handle(const QWheelEvent& event) {
    const double now = queue_.now();
    const ScrollDevice& device = deviceOf(event, now);
    if (!isOfTouchpad(event, device)) {
        turnWheel(event, now);
    } else if (event.phase() != Qt::NoScrollPhase) {
        handlePhase(event, device);
    } else {
        move(Swipe::Unphased, event, device);
    }
}

void ScrollEvents::forget() {
    pendingEnd_.cancel();
    swipe_ = Swipe::None;
    notches_.forget();
}

// After a pause the device is looked up again: its number may belong to another one by now.
const ScrollDevice& ScrollEvents::deviceOf(const QWheelEvent& event, double now) {
    const qint64 id = event.pointingDevice() != nullptr ? event.pointingDevice()->systemId() : 0;
    if (id != deviceId_ || now - lastEvent_ > pause) {
        device_ = devices_.device(id);
        deviceId_ = id;
    }
    lastEvent_ = now;
    return device_;
}

// Known devices have a known number of points per notch. For others pixels are points, once the swipe has had
// any: some devices send none.
QPointF ScrollEvents::points(const QWheelEvent& event, const ScrollDevice& device) {
    if (device.kind == ScrollDevice::Kind::Unknown) {
        hasPixels_ = hasPixels_ || !event.pixelDelta().isNull();
        if (hasPixels_) {
            return event.pixelDelta();
        }
    }
    return notches(event) * device.pointsPerNotch;
}

void ScrollEvents::turnWheel(const QWheelEvent& event, double now) {
    if (const auto whole = notches_.add(notches(event), now)) {
        qCDebug(scrollLog, "a wheel turns by a notch");
        handler_({*whole, false, ScrollEvent::Phase::None, false});
    }
}

void ScrollEvents::handlePhase(const QWheelEvent& event, const ScrollDevice& device) {
    switch (event.phase()) {
    case Qt::ScrollBegin:
        begin(Swipe::Phased);
        move(Swipe::Phased, event, device);
        break;
    case Qt::ScrollUpdate:
        move(Swipe::Phased, event, device);
        break;
    case Qt::ScrollEnd:
        // Not for a swipe that began over another window.
        if (swipe_ == Swipe::Phased) {
            move(Swipe::Phased, event, device);
            end();
        }
        break;
    case Qt::ScrollMomentum:
        handler_({points(event, device), true, ScrollEvent::Phase::None, true});
        break;
    case Qt::NoScrollPhase:
        break;
    }
}

void ScrollEvents::move(Swipe kind, const QWheelEvent& event, const ScrollDevice& device) {
    if (event.angleDelta().isNull() && event.pixelDelta().isNull()) {
        return;
    }
    if (swipe_ != kind) {
        begin(kind);
    }
    handler_(fingers(ScrollEvent::Phase::Changed, points(event, device)));
    if (kind == Swipe::Unphased) {
        endAfterPause();
    }
}

void ScrollEvents::begin(Swipe kind) {
    pendingEnd_.cancel();
    swipe_ = kind;
    hasPixels_ = false;
    qCDebug(scrollLog, "a swipe begins");
    handler_(fingers(ScrollEvent::Phase::Began));
}

void ScrollEvents::end() {
    swipe_ = Swipe::None;
    qCDebug(scrollLog, "a swipe ends");
    handler_(fingers(ScrollEvent::Phase::Ended));
}

void ScrollEvents::endAfterPause() {
    pendingEnd_ = queue_.postAfter(pause, [this] { end(); });
}

} // namespace amberquill
