#include "platform/linux/wayland/EventQueue.h"

#include <cerrno>
#include <poll.h>
#include <wayland-client.h>

namespace amberquill::desktop {

Q_LOGGING_CATEGORY(waylandLog, "amberquill.wayland", QtCriticalMsg)

EventQueue::EventQueue(wl_display* display)
    : display_(display)
    , queue_(wl_display_create_queue(display), &wl_event_queue_destroy)
    , wrapper_(static_cast<wl_display*>(wl_proxy_create_wrapper(display)),
               [](wl_display* wrapper) { wl_proxy_wrapper_destroy(wrapper); }) {
    wl_proxy_set_queue(reinterpret_cast<wl_proxy*>(wrapper_.get()), queue_.get());
}

std::unique_ptr<wl_registry, void (*)(wl_registry*)> EventQueue::registry() const {
    return {wl_display_get_registry(wrapper_.get()), [](wl_registry* it) { wl_registry_destroy(it); }};
}

void EventQueue::handle() {
    static_cast<void>(readMore(0));
    wl_display_dispatch_queue_pending(display_, queue_.get());
}

bool EventQueue::handleUntil(const std::function<bool()>& isSo, QDeadlineTimer deadline) {
    wl_display_dispatch_queue_pending(display_, queue_.get());
    while (!isSo()) {
        const auto time = static_cast<int>(deadline.remainingTime());
        if (time == 0 || !readMore(time)) {
            return false;
        }
    }
    return true;
}

// Reads the connection once, for all its queues. False: nothing arrived in time, or the connection is lost.
bool EventQueue::readMore(int milliseconds) {
    if (wl_display_prepare_read_queue(display_, queue_.get()) != 0) {
        return wl_display_dispatch_queue_pending(display_, queue_.get()) >= 0;
    }
    wl_display_flush(display_);
    pollfd socket{wl_display_get_fd(display_), POLLIN, 0};
    const int ready = ::poll(&socket, 1, milliseconds);
    if (ready <= 0) {
        wl_display_cancel_read(display_);
        return ready < 0 && errno == EINTR;
    }
    return wl_display_read_events(display_) >= 0 &&
           wl_display_dispatch_queue_pending(display_, queue_.get()) >= 0;
}

bool EventQueue::roundTrip(QDeadlineTimer deadline) {
    bool answered = false;
    const std::unique_ptr<wl_callback, void (*)(wl_callback*)> callback(
        wl_display_sync(wrapper_.get()), [](wl_callback* it) { wl_callback_destroy(it); });
    static constexpr wl_callback_listener listener{
        .done = [](void* done, wl_callback*, std::uint32_t) { *static_cast<bool*>(done) = true; }};
    wl_callback_add_listener(callback.get(), &listener, &answered);
    const bool came = handleUntil([&answered] { return answered; }, deadline);
    if (!came) {
        qCDebug(waylandLog) << "the compositor has not answered in time, or has gone";
    }
    return came;
}

} // namespace amberquill::desktop
