#pragma once

#include <QThreadPool>
#include <chrono>
#include <functional>
#include <list>
#include <mutex>

namespace amberquill {

// The threads for one kind of background work. A piece that does not end, such as a read from a mount that
// does not answer, holds its thread for as long as that takes, but not its place: what waits gets another
// thread for it. Main thread only.
class BackgroundLane {
public:
    using Work = std::function<void()>;
    using Clock = std::chrono::steady_clock;

    struct Bounds {
        int width = 1; // pieces that run at a time
        int most = 1;  // threads at a time, those that are stuck among them
    };

    // What has run for so long counts as stuck.
    static constexpr std::chrono::milliseconds patience{500};

    explicit BackgroundLane(const Bounds& bounds);
    BackgroundLane(const BackgroundLane&) = delete;
    BackgroundLane& operator=(const BackgroundLane&) = delete;
    // Waits for all its work.
    ~BackgroundLane();

    void start(Work work);

    // How many pieces run at a time from now on.
    void setWidth(int width);

    // Whether there is work that waits for its place.
    [[nodiscard]] bool isCrowded() const;

    // Gives the places of what is stuck by now to what waits.
    void passStuck();

    // What has not begun by now never will.
    void dropWaiting();

    // Waits for the end of all work, no longer than until then; whether it came.
    [[nodiscard]] bool waitUntil(Clock::time_point deadline);

private:
    class Task;

    void seeEnds() const;

    Bounds bounds_;
    mutable std::mutex mutex_; // guards what follows but the pool
    int waiting_ = 0;
    std::list<Clock::time_point> begun_; // the work under way
    QThreadPool pool_;
};

} // namespace amberquill
