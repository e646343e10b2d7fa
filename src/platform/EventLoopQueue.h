#pragma once

#include "platform/MainQueue.h"

#include <QObject>
#include <vector>

namespace amberquill {

// The main queue on Qt's event loop and Qt's thread pool. Made on the main thread, after the application
// object; it outlives everything that posts to it. Its destruction waits for background work that is under
// way.
class EventLoopQueue final : public QObject, public MainQueue {
    Q_OBJECT

public:
    // `slowdown`: how many seconds of the world one of its seconds takes, so that motion can be looked at.
    explicit EventLoopQueue(double slowdown = 1)
        : slowdown_(slowdown) {}
    EventLoopQueue(const EventLoopQueue&) = delete;
    EventLoopQueue& operator=(const EventLoopQueue&) = delete;
    ~EventLoopQueue() override;

    [[nodiscard]] double now() const override;
    [[nodiscard]] std::chrono::sys_seconds date() const override;
    void post(Work work) override;
    DelayedWork postAfter(double seconds, Work work) override;
    void runInBackground(Work work, Work thenOnMain) override;

    // While a start is under way the processor is left to it: background work runs one piece at a time, and
    // after `hold` not at all. `release` makes up for it: from then on as much runs as there are cores.
    static void runOneAtATime();
    void hold() { isHeld_ = true; }
    void release();

protected:
    void customEvent(QEvent* event) override;

private:
    double slowdown_;
    bool isHeld_ = false;
    std::vector<Work> held_;
};

} // namespace amberquill
