#pragma once

#include "platform/MainQueue.h"

#include <QObject>

namespace amberquill {

// The main queue on Qt's event loop and Qt's thread pool. Made on the main thread, after the application
// object; it outlives everything that posts to it. Its destruction waits for background work that is under
// way.
class EventLoopQueue final : public QObject, public MainQueue {
    Q_OBJECT

public:
    EventLoopQueue() = default;
    EventLoopQueue(const EventLoopQueue&) = delete;
    EventLoopQueue& operator=(const EventLoopQueue&) = delete;
    ~EventLoopQueue() override;

    [[nodiscard]] double now() const override;
    void post(Work work) override;
    DelayedWork postAfter(double seconds, Work work) override;
    void runInBackground(Work work, Work thenOnMain) override;

    // How many pieces of background work run at a time: one leaves the processor to a start that is under
    // way, as many as there are cores is the rule.
    static void runOneAtATime();
    static void runAsCoresAllow();
};

} // namespace amberquill
