#include "platform/EventLoopQueue.h"

#include "platform/HandedOver.h"

#include <QCoreApplication>
#include <QEvent>
#include <QThread>
#include <algorithm>
#include <cmath>

namespace amberquill {

namespace {

// However many mounts hang.
constexpr int mostThreads = 32;

std::size_t indexOf(Lane lane) {
    return static_cast<std::size_t>(lane);
}

// As many as there are cores where work takes the processor's time.
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
        break;
    }
    return 1;
}

template<std::size_t... Index>
std::array<BackgroundLane, sizeof...(Index)> makeLanes(std::index_sequence<Index...> /*lanes*/) {
    return {BackgroundLane({usualWidth(static_cast<Lane>(Index)), mostThreads})...};
}

class WorkEvent final : public QEvent {
public:
    explicit WorkEvent(MainQueue::Work work)
        : QEvent(kind())
        , work_(std::move(work)) {}

    static Type kind() {
        static const int registered = QEvent::registerEventType();
        return static_cast<Type>(registered);
    }

    void run() { work_.run(); }

private:
    HandedOver work_;
};

} // namespace

EventLoopQueue::EventLoopQueue(double slowdown)
    : slowdown_(slowdown)
    , lanes_(makeLanes(std::make_index_sequence<laneCount>()))
    , flushes_({mostThreads, mostThreads}) {
    stuckCheck_.setInterval(BackgroundLane::patience);
    connect(&stuckCheck_, &QTimer::timeout, this, &EventLoopQueue::passStuck);
}

EventLoopQueue::~EventLoopQueue() = default;

double EventLoopQueue::now() const {
    const std::chrono::duration<double> passed = std::chrono::steady_clock::now().time_since_epoch();
    return passed.count() / slowdown_;
}

std::chrono::sys_seconds EventLoopQueue::date() const {
    return std::chrono::floor<std::chrono::seconds>(std::chrono::system_clock::now());
}

void EventLoopQueue::post(Work work) {
    QCoreApplication::postEvent(this, new WorkEvent(std::move(work)));
}

void EventLoopQueue::customEvent(QEvent* event) {
    if (event->type() == WorkEvent::kind()) {
        static_cast<WorkEvent*>(event)->run();
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
    for (std::size_t lane = 0; lane < laneCount; ++lane) {
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
    return flushes_.waitUntil(BackgroundLane::Clock::now() + longest);
}

bool EventLoopQueue::finish(std::chrono::milliseconds longest) {
    const auto deadline = BackgroundLane::Clock::now() + longest;
    held_.clear();
    flushes_.dropWaiting();
    for (std::size_t lane = 0; lane < laneCount; ++lane) {
        lanes_.at(lane).dropWaiting();
    }
    return flushes_.waitUntil(deadline) &&
           std::all_of(lanes_.begin(), lanes_.end(),
                       [deadline](BackgroundLane& lane) { return lane.waitUntil(deadline); });
}

void EventLoopQueue::start(Lane lane, Work work, Work thenOnMain) {
    Work task = [this, work = std::move(work), then = std::move(thenOnMain)]() mutable {
        work();
        post(std::move(then));
    };
    if (isHeld_ && lane != Lane::Launch) {
        held_.push_back({lane, std::move(task)});
    } else {
        run(lane, std::move(task));
    }
}

void EventLoopQueue::run(Lane lane, Work task) {
    BackgroundLane& own = lanes_.at(indexOf(lane));
    own.start(std::move(task));
    if (own.isCrowded() && !stuckCheck_.isActive()) {
        stuckCheck_.start();
    }
}

void EventLoopQueue::passStuck() {
    bool isNeeded = false;
    for (BackgroundLane& lane : lanes_) {
        lane.passStuck();
        isNeeded = isNeeded || lane.isCrowded();
    }
    if (!isNeeded) {
        stuckCheck_.stop();
    }
}

} // namespace amberquill
