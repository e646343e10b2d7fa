#pragma once

#include "platform/MainQueue.h"
#include "platform/linux/queue/BackgroundLane.h"

#include <QObject>
#include <array>
#include <chrono>
#include <functional>
#include <memory>
#include <vector>

namespace amberquill {

// The main queue on Qt's event loop, with threads for each lane. Made on the main thread, after the
// application object; it outlives everything that posts to it. Its destruction waits for background work that
// is under way, for as long as that takes.
class EventLoopQueue final : public QObject, public MainQueue {
    Q_OBJECT

public:
    // `slowdown`: how many seconds of the world one of its seconds takes, so that motion can be looked at.
    explicit EventLoopQueue(double slowdown = 1);
    EventLoopQueue(const EventLoopQueue&) = delete;
    EventLoopQueue& operator=(const EventLoopQueue&) = delete;
    ~EventLoopQueue() override;

    [[nodiscard]] double now() const override;
    [[nodiscard]] std::chrono::sys_seconds date() const override;
    void post(Work work) override;

    // While a start is under way the processor is left to it: of each lane's background work one piece runs
    // at a time, of icons half as many as there are cores, and after `hold` none. `release` makes up for it:
    // from then on as much runs as there are cores.
    void runOneAtATime();
    void hold() { isHeld_ = true; }
    void release();

    // Runs each of the works on a thread of its own, and waits for the end of all no longer than that;
    // whether it came. Work that is late goes on.
    bool runWithin(std::chrono::milliseconds longest, std::vector<Work> works);

    // At the program's end: lets go of what has not begun and waits for the rest. False: some of it has not
    // ended within that time, and goes on using what it was given.
    [[nodiscard]] bool finish(std::chrono::milliseconds longest);

protected:
    void customEvent(QEvent* event) override;

private:
    struct Mailbox;

    [[nodiscard]] std::function<void(Work)> poster() const override;
    void wait(double seconds, Work work, std::shared_ptr<const bool> cancelled) override;
    void start(Lane lane, Work work, Work thenOnMain) override;
    void run(Lane lane, Work task);
    void lookForStuck();

    struct Held {
        Lane lane;
        Work work;
    };

    double slowdown_;
    bool isHeld_ = false;
    std::vector<Held> held_;
    std::shared_ptr<Mailbox> mailbox_; // shared with other threads
    std::array<BackgroundLane, sharedLaneCount> lanes_;
    BackgroundLane flushes_;
    bool looksForStuck_ = false; // while work waits
};

} // namespace amberquill
