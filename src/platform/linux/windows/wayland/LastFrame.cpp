#include "platform/linux/windows/wayland/LastFrame.h"

#include <QEvent>
#include <QWindow>
#include <utility>

namespace amberquill::desktop {
namespace {

// Seconds after which Qt, too, takes a window without an answer for one that cannot be seen.
constexpr double patience = 0.1;

} // namespace

LastFrame::LastFrame(MainQueue& queue, const QVersionNumber& qt)
    : queue_(queue)
    , isNeeded_(qt < QVersionNumber(6, 8)) {}

void LastFrame::await(QWindow& window, std::function<void()> then) {
    cancel();
    if (!isNeeded_ || !window.isVisible()) {
        then();
        return;
    }
    window_ = &window;
    then_ = std::move(then);
    window.installEventFilter(this);
    // Qt delivers the request after the answer, on the main thread.
    window.requestUpdate();
    queue_.thenAfter(wait_, patience, [this] { end(); });
}

void LastFrame::cancel() {
    if (QWindow* window = std::exchange(window_, nullptr)) {
        wait_.reset();
        then_ = nullptr;
        window->removeEventFilter(this);
        window->requestUpdate();
    }
}

bool LastFrame::eventFilter(QObject* watched, QEvent* event) {
    if (event->type() != QEvent::UpdateRequest) {
        return QObject::eventFilter(watched, event);
    }
    if (then_) {
        // Later: Qt delivers the event from inside the window that is to be hidden.
        queue_.then(wait_, [this] { end(); });
    }
    return true;
}

void LastFrame::end() {
    wait_.reset();
    const auto then = std::exchange(then_, nullptr);
    then();
    // Only now: a frame drawn before the window is hidden would be without an answer again.
    if (QWindow* window = std::exchange(window_, nullptr)) {
        window->removeEventFilter(this);
    }
}

} // namespace amberquill::desktop
