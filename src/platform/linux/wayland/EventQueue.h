// platform/linux/wayland/: Wayland helpers that several rooms share.
//
// Parts: EventQueue, the events of our own objects on Qt's connection or one of our own, with bounded waits;
// Globals, the interfaces that the compositor offers.
//
// Rules: a compositor that does not answer in time counts as not offering the protocol. Objects of one queue
// belong to one thread at a time. Log: amberquill.wayland.
#pragma once

#include <QDeadlineTimer>
#include <QLoggingCategory>
#include <functional>
#include <memory>

struct wl_display;
struct wl_event_queue;
struct wl_registry;

namespace amberquill::desktop {

Q_DECLARE_LOGGING_CATEGORY(waylandLog)

// The events of some objects of a Wayland connection. Other code may read the connection, too, but these
// events are handled only by the calls below, on one thread at a time.
class EventQueue {
public:
    // `display` outlives the queue, the queue outlives its objects.
    explicit EventQueue(wl_display* display);

    // A registry; the objects that it binds send their events to this queue.
    [[nodiscard]] std::unique_ptr<wl_registry, void (*)(wl_registry*)> registry() const;

    // Handles the events that have arrived, without waiting.
    void handle();

    // Flushes requests and handles events until `isSo` is true. False: not in time, or the connection is
    // lost.
    [[nodiscard]] bool handleUntil(const std::function<bool()>& isSo, QDeadlineTimer deadline);

    // Waits until the compositor has handled all requests that were sent before.
    [[nodiscard]] bool roundTrip(QDeadlineTimer deadline);

private:
    [[nodiscard]] bool readMore(int milliseconds);

    wl_display* display_;
    std::unique_ptr<wl_event_queue, void (*)(wl_event_queue*)> queue_;
    std::unique_ptr<wl_display, void (*)(wl_display*)> wrapper_; // its new objects use this queue
};

} // namespace amberquill::desktop
