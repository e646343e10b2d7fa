#pragma once

#include "model/Pages.h"
#include "platform/MainQueue.h"
#include "platform/ScrollDevices.h"

#include <QPointF>
#include <functional>
#include <optional>

class QWheelEvent;

namespace amberquill {

// Adds up a wheel's turns to whole notches: high-resolution wheels send fractions of a notch.
class WheelNotches {
public:
    // Seconds without a turn after which the fraction is dropped.
    static constexpr double pause = 0.5;

    // The notches that a turn at `now` (seconds) completes, if any. On each axis a change of direction drops
    // the fraction, and so does a pause.
    std::optional<QPointF> add(const QPointF& notches, double now);

    void forget() { *this = {}; }

private:
    // The turn since the last whole notch.
    struct Axis {
        double fraction = 0;
        bool forward = false;

        double add(double notches);
    };

    Axis horizontal_;
    Axis vertical_;
    double last_ = -1e9;
};

// Turns Qt's wheel events into the model's: whole notches of a wheel, and swipes of a touchpad in points with
// a beginning and an end. Qt 6.4 was observed to send:
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

    // Seconds without movement that end a swipe, for devices that do not report the end.
    static constexpr double pause = 0.15;

    // `queue` and `devices` outlive this object. `handler` is called from handle() and from the queue.
    ScrollEvents(MainQueue& queue, const ScrollDevices& devices, Handler handler);
    ScrollEvents(const ScrollEvents&) = delete;
    ScrollEvents& operator=(const ScrollEvents&) = delete;
    ~ScrollEvents() = default;

    void handle(const QWheelEvent& event);

    // Drops the swipe or the fraction of a notch in progress, without further events.
    void forget();

private:
    enum class Swipe {
        None,
        Phased,  // the device reports its end
        Unphased // ended by a pause
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
    bool hasPixels_ = false; // in this swipe
    qint64 deviceId_ = -1;
    ScrollDevice device_;
    double lastEvent_ = -1e9;
    DelayedWork pendingEnd_;
};

} // namespace amberquill
