#include "platform/EventLoopQueue.h"

#include <QThread>
#include <QThreadPool>
#include <QTimer>
#include <chrono>
#include <cmath>

namespace amberquill {

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
    QMetaObject::invokeMethod(this, std::move(work), Qt::QueuedConnection);
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
        QThreadPool::globalInstance()->start(std::move(work));
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
        QThreadPool::globalInstance()->start(std::move(task));
    }
}

} // namespace amberquill
