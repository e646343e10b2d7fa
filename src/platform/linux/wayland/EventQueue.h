#pragma once

#include <QDeadlineTimer>
#include <functional>
#include <memory>

struct wl_display;
struct wl_event_queue;
struct wl_registry;

namespace amberquill::desktop {

// The events of some objects of a Wayland connection, which others may read too. Handled by who asks here,
// and by nobody else: on one thread at a time.
class EventQueue {
public:
    // `display` outlives this, and this outlives the objects.
    explicit EventQueue(wl_display* display);

    // Objects that it makes have their events here.
    [[nodiscard]] std::unique_ptr<wl_registry, void (*)(wl_registry*)> registry() const;

    // Handles what has come so far, without waiting.
    void handle();

    // Sends what is to be sent and handles what comes until something is so. False: it did not become so in
    // time, or the compositor has gone.
    [[nodiscard]] bool handleUntil(const std::function<bool()>& isSo, QDeadlineTimer deadline);

    // Waits until the compositor has answered everything that was sent before.
    [[nodiscard]] bool roundTrip(QDeadlineTimer deadline);

private:
    [[nodiscard]] bool readMore(int milliseconds);

    wl_display* display_;
    std::unique_ptr<wl_event_queue, void (*)(wl_event_queue*)> queue_;
    std::unique_ptr<wl_display, void (*)(wl_display*)> wrapper_; // makes objects with their events here
};

} // namespace amberquill::desktop
