// queue/: the main queue on Qt's event loop, and the threads of background work.
//
// `EventLoopQueue` implements `MainQueue`: clock, timers, and the mailbox through which other threads post
// work to the main thread. Each kind of background work has a `BackgroundLane` with a bounded number of
// threads, so that reading many icons does not delay saving the layout. A piece that hangs, for instance on a
// mount that does not answer, keeps its thread but gives its place to other work after half a second;
// `Lane::Apart` is for work that is likely to hang. At the program's end, `finish` waits only for a bounded
// time. Begin with `EventLoopQueue::start`.
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

// The main queue on Qt's event loop. Made on the main thread, after the application object. It outlives all
// objects that post to it, except through `answer`. Its destructor waits for running background work, except
// `Lane::Apart`.
class EventLoopQueue final : public QObject, public MainQueue {
    Q_OBJECT

public:
    // `slowdown`: real seconds for each second of the queue, to watch animations in slow motion.
    explicit EventLoopQueue(double slowdown = 1);
    EventLoopQueue(const EventLoopQueue&) = delete;
    EventLoopQueue& operator=(const EventLoopQueue&) = delete;
    ~EventLoopQueue() override;

    [[nodiscard]] double now() const override;
    [[nodiscard]] std::chrono::sys_seconds date() const override;
    void post(Work work) override;

    // These leave the CPU to the program's start. `runOneAtATime`: each lane runs one piece at a time, icons
    // one for every two cores. `hold`: new background work waits, except `Lane::Launch` and `Lane::Apart`.
    // `release` ends both.
    void runOneAtATime();
    void hold() { isHeld_ = true; }
    void release();

    // Runs each piece on a thread of its own and waits until all have ended, but no longer than `longest`.
    // False: some of them still run.
    bool runWithin(std::chrono::milliseconds longest, std::vector<Work> works);

    // For the program's end: drops background work that has not begun and waits for the rest, but no longer
    // than `longest`. False: some of it still runs, and still uses the objects that it refers to.
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
