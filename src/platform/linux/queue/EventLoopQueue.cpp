#include "platform/linux/queue/EventLoopQueue.h"

#include "platform/common/Thread.h"

#include <QCoreApplication>
#include <QEvent>
#include <QThread>
#include <QTimer>
#include <algorithm>
#include <cmath>
#include <deque>
#include <mutex>
#include <utility>

namespace amberquill {

namespace {

constexpr int mostThreads = 32; // of a lane, even if many mounts hang

std::size_t indexOf(Lane lane) {
    return static_cast<std::size_t>(lane);
}

// How many pieces a lane runs at a time: one for each core if the work is CPU-bound.
int usualWidth(Lane lane) {
    constexpr int launches = 4;
    switch (lane) {
    case Lane::General:
    case Lane::Icons:
        return QThread::idealThreadCount();
    case Lane::Launch:
        return launches;
    case Lane::Scan:
    case Lane::Save:
    case Lane::Apart:
        break;
    }
    return 1;
}

template<std::size_t... Index>
std::array<BackgroundLane, sizeof...(Index)> makeLanes(std::index_sequence<Index...> /*lanes*/) {
    return {BackgroundLane({usualWidth(static_cast<Lane>(Index)), mostThreads})...};
}

QEvent::Type workEvent() {
    static const int registered = QEvent::registerEventType();
    return static_cast<QEvent::Type>(registered);
}

} // namespace

// Work for the main thread. Each piece is announced by an event of its own, so it runs in turn with Qt's
// events. The thread sanitizer sees this lock; it does not see Qt's.
struct EventLoopQueue::Mailbox {
    std::mutex mutex;
    std::deque<Work> works;
    QObject* receiver = nullptr; // null: the queue has been destroyed

    // Any thread.
    void post(Work work) {
        const std::scoped_lock lock(mutex);
        if (receiver != nullptr) {
            works.push_back(std::move(work));
            QCoreApplication::postEvent(receiver, new QEvent(workEvent()));
        }
    }

    [[nodiscard]] Work next() {
        const std::scoped_lock lock(mutex);
        Work work = std::move(works.front());
        works.pop_front();
        return work;
    }

    void close() {
        std::deque<Work> dropped; // declared first: destroyed after the lock is released
        const std::scoped_lock lock(mutex);
        receiver = nullptr;
        dropped.swap(works);
    }
};

EventLoopQueue::EventLoopQueue(double slowdown)
    : slowdown_(slowdown)
    , mailbox_(std::make_shared<Mailbox>())
    , lanes_(makeLanes(std::make_index_sequence<sharedLaneCount>()))
    , flushes_({mostThreads, mostThreads}) {
    mailbox_->receiver = this;
}

EventLoopQueue::~EventLoopQueue() {
    mailbox_->close();
}

double EventLoopQueue::now() const {
    const std::chrono::duration<double> passed = std::chrono::steady_clock::now().time_since_epoch();
    return passed.count() / slowdown_;
}

std::chrono::sys_seconds EventLoopQueue::date() const {
    return std::chrono::floor<std::chrono::seconds>(std::chrono::system_clock::now());
}

void EventLoopQueue::post(Work work) {
    mailbox_->post(std::move(work));
}

std::function<void(MainQueue::Work)> EventLoopQueue::poster() const {
    return [mailbox = mailbox_](Work work) { mailbox->post(std::move(work)); };
}

void EventLoopQueue::customEvent(QEvent* event) {
    if (event->type() == workEvent()) {
        mailbox_->next()();
    }
}

void EventLoopQueue::wait(double seconds, Work work, std::shared_ptr<const bool> cancelled) {
    const auto delay = std::chrono::milliseconds(std::llround(std::max(seconds, 0.0) * slowdown_ * 1000.0));
    QTimer::singleShot(delay, Qt::PreciseTimer, this,
                       [work = std::move(work), cancelled = std::move(cancelled)] {
                           if (!*cancelled) {
                               work();
                           }
                       });
}

void EventLoopQueue::runOneAtATime() {
    for (BackgroundLane& lane : lanes_) {
        lane.setWidth(1);
    }
    lanes_.at(indexOf(Lane::Icons)).setWidth(std::max(QThread::idealThreadCount() / 2, 1));
}

void EventLoopQueue::release() {
    isHeld_ = false;
    for (std::size_t lane = 0; lane < sharedLaneCount; ++lane) {
        lanes_.at(lane).setWidth(usualWidth(static_cast<Lane>(lane)));
    }
    for (Held& held : std::exchange(held_, {})) {
        run(held.lane, std::move(held.work));
    }
}

bool EventLoopQueue::runWithin(std::chrono::milliseconds longest, std::vector<Work> works) {
    for (Work& work : works) {
        flushes_.start(std::move(work));
    }
    return flushes_.waitUntil(QDeadlineTimer(longest));
}

bool EventLoopQueue::finish(std::chrono::milliseconds longest) {
    const QDeadlineTimer deadline(longest);
    held_.clear();
    flushes_.dropWaiting();
    for (std::size_t lane = 0; lane < sharedLaneCount; ++lane) {
        lanes_.at(lane).dropWaiting();
    }
    return flushes_.waitUntil(deadline) &&
           std::all_of(lanes_.begin(), lanes_.end(),
                       [deadline](BackgroundLane& lane) { return lane.waitUntil(deadline); });
}

void EventLoopQueue::start(Lane lane, Work work, Work thenOnMain) {
    Work task = [mailbox = mailbox_, work = std::move(work), then = std::move(thenOnMain)]() mutable {
        work();
        mailbox->post(std::move(then));
    };
    if (lane == Lane::Apart) {
        if (!startThread(task)) {
            task();
        }
    } else if (isHeld_ && lane != Lane::Launch) {
        held_.push_back({lane, std::move(task)});
    } else {
        run(lane, std::move(task));
    }
}

void EventLoopQueue::run(Lane lane, Work task) {
    BackgroundLane& own = lanes_.at(indexOf(lane));
    own.start(std::move(task));
    if (own.isCrowded() && !looksForStuck_) {
        looksForStuck_ = true;
        lookForStuck();
    }
}

void EventLoopQueue::lookForStuck() {
    QTimer::singleShot(BackgroundLane::patience, this, [this] {
        looksForStuck_ = false;
        for (BackgroundLane& lane : lanes_) {
            lane.passStuck();
            looksForStuck_ = looksForStuck_ || lane.isCrowded();
        }
        if (looksForStuck_) {
            lookForStuck();
        }
    });
}

} // namespace amberquill
