#pragma once

#include "model/Pages.h"
#include "platform/MainQueue.h"
#include "platform/ScrollDevices.h"

#include <QPointF>
#include <functional>
#include <optional>

class QWheelEvent;

namespace amberquill {

// Adds up what a wheel turns by to whole notches: a wheel of high resolution sends each notch in fractions.
class WheelNotches {
public:
    // Seconds without a turn after which a fraction counts no more.
    static constexpr double pause = 0.5;

    // The whole notches that are complete with a turn by `notches` at `now` (seconds), if any. On each axis a
    // change of direction drops the fraction gathered so far, and so does a pause.
    std::optional<QPointF> add(const QPointF& notches, double now);

    void forget() { *this = {}; }

private:
    // What an axis has turned by beyond its last whole notch.
    struct Axis {
        double fraction = 0;
        bool forward = false;

        double add(double notches);
    };

    Axis horizontal_;
    Axis vertical_;
    double last_ = -1e9;
};

// Makes the model's events of Qt's: a wheel's whole notches, and a touchpad's swipes in points with beginning
// and end. What reaches Qt, as tried with Qt 6.4:
//
// - X11: angleDelta in 120ths of a notch, from wheels and touchpads alike, never a phase; what is below a
//   120th of a notch is cut off. pixelDelta is the driver's own unit, also for wheels, and means nothing.
//   Touchpads send nothing when the fingers leave.
// - Wayland: a wheel sends angleDelta alone. A touchpad sends phases and pixelDelta in points, fractions of
//   which come with a later event. A pointing stick that scrolls sends pixelDelta without a phase. The
//   event's device is said to be a touchpad, whatever it is.
//
// Everywhere, scrolling down and to the right is negative in both deltas. Whether fingers that move left
// scroll to the left or, with natural scrolling, to the right is the user's choice, which the system has
// applied to the sign already.
class ScrollEvents {
public:
    using Handler = std::function<void(const ScrollEvent&)>;

    // Seconds without movement that end a swipe of a device that does not tell.
    static constexpr double pause = 0.15;

    // `queue` and `devices` outlive this object. `handler` is called from handle() and from the queue.
    ScrollEvents(MainQueue& queue, const ScrollDevices& devices, Handler handler);

    void handle(const QWheelEvent& event);

    // Forgets what is under way: the launcher goes, and what it would have led to with it.
    void forget();

private:
    enum class Swipe {
        None,
        Phased,  // the device tells its end
        Unphased // a pause does
    };

    [[nodiscard]] const ScrollDevice& deviceOf(const QWheelEvent& event, double now);
    [[nodiscard]] QPointF points(const QWheelEvent& event, const ScrollDevice& device);
    void handlePhase(const QWheelEvent& event, const ScrollDevice& device);
    void turnWheel(const QWheelEvent& event, double now);
    void move(Swipe kind, const QWheelEvent& event, const ScrollDevice& device);
    void begin(Swipe kind);
    void end();
    void endAfterPause();

    MainQueue& queue_;
    const ScrollDevices& devices_;
    Handler handler_;
    WheelNotches notches_;
    Swipe swipe_ = Swipe::None;
    bool toldPixels_ = false; // in this swipe
    qint64 deviceId_ = -1;
    ScrollDevice device_;
    double lastEvent_ = -1e9;
    DelayedWork pendingEnd_;
};

} // namespace amberquill
