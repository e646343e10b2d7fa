#include "platform/EventLoopQueue.h"

#include <QCoreApplication>
#include <QEvent>
#include <QRunnable>
#include <QThread>
#include <QThreadPool>
#include <QTimer>
#include <atomic>
#include <chrono>
#include <cmath>

namespace amberquill {

namespace {

// Work on its way to another thread. Qt's locks order the hand-over, but Qt is not built for the thread
// sanitizer: what it sees is this flag.
class HandedOver {
public:
    explicit HandedOver(MainQueue::Work work)
        : work_(std::move(work)) {
        isReady_.store(true, std::memory_order_release);
    }

    void run() {
        if (isReady_.load(std::memory_order_acquire)) {
            work_();
        }
    }

private:
    MainQueue::Work work_;
    std::atomic<bool> isReady_ = false;
};

class Task final : public QRunnable {
public:
    explicit Task(MainQueue::Work work)
        : work_(std::move(work)) {}

    void run() override { work_.run(); }

private:
    HandedOver work_;
};

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

EventLoopQueue::~EventLoopQueue() {
    QThreadPool::globalInstance()->waitForDone();
}

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

DelayedWork EventLoopQueue::postAfter(double seconds, Work work) {
    auto cancelled = std::make_shared<bool>(false);
    const auto delay = std::chrono::milliseconds(std::llround(std::max(seconds, 0.0) * slowdown_ * 1000.0));
    QTimer::singleShot(delay, Qt::PreciseTimer, this, [work = std::move(work), cancelled] {
        if (!*cancelled) {
            work();
        }
    });
    return DelayedWork(std::move(cancelled));
}

void EventLoopQueue::runOneAtATime() {
    QThreadPool::globalInstance()->setMaxThreadCount(1);
}

void EventLoopQueue::release() {
    QThreadPool::globalInstance()->setMaxThreadCount(QThread::idealThreadCount());
    isHeld_ = false;
    for (Work& work : std::exchange(held_, {})) {
        QThreadPool::globalInstance()->start(new Task(std::move(work)));
    }
}

void EventLoopQueue::runInBackground(Work work, Work thenOnMain) {
    Work task = [this, work = std::move(work), then = std::move(thenOnMain)]() mutable {
        work();
        post(std::move(then));
    };
    if (isHeld_) {
        held_.push_back(std::move(task));
    } else {
        QThreadPool::globalInstance()->start(new Task(std::move(task)));
    }
}

} // namespace amberquill
