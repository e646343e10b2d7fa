#pragma once

#include <QDeadlineTimer>
#include <chrono>
#include <functional>
#include <memory>

namespace amberquill {

// The threads for one kind of background work. A stuck piece, such as a read from a mount that does not
// answer, keeps its thread but not its place: waiting work gets another thread. Main thread only.
class BackgroundLane {
public:
    using Work = std::function<void()>;

    struct Bounds {
        int width = 1; // pieces that run at a time
        int most = 1;  // threads at a time, including stuck ones
    };

    // A piece that has run for so long counts as stuck.
    static constexpr std::chrono::milliseconds patience{500};

    explicit BackgroundLane(const Bounds& bounds);
    BackgroundLane(const BackgroundLane&) = delete;
    BackgroundLane& operator=(const BackgroundLane&) = delete;
    // Waits until all work has ended.
    ~BackgroundLane();

    void start(Work work);

    // The number of pieces that run at a time from now on.
    void setWidth(int width);

    // Whether work waits for a place.
    [[nodiscard]] bool isCrowded() const;

    // Gives the places of stuck pieces to waiting ones.
    void passStuck();

    // Drops the work that has not begun.
    void dropWaiting();

    // Waits until all work has ended, or until the deadline. False: some work has not ended.
    [[nodiscard]] bool waitUntil(QDeadlineTimer deadline);

private:
    struct State;

    Bounds bounds_;
    std::shared_ptr<State> state_; // shared with the threads
};

} // namespace amberquill
