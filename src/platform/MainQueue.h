// platform/: what the launcher asks of a desktop. Abstract classes only, each with a null object for "this
// desktop has none"; the answers stand in platform/linux/. Callers never test for null and never ask where
// they run.
#pragma once

#include <chrono>
#include <cstddef>
#include <functional>
#include <memory>
#include <utility>

namespace amberquill {

// Work that waits on the main queue. Copies refer to the same work; letting go of it does not cancel it.
class DelayedWork {
public:
    DelayedWork() = default;
    explicit DelayedWork(std::shared_ptr<bool> cancelled)
        : cancelled_(std::move(cancelled)) {}

    // The work will not run. Harmless when it has run already.
    void cancel() {
        if (cancelled_) {
            *cancelled_ = true;
        }
    }

private:
    std::shared_ptr<bool> cancelled_;
};

// What background work is for. Work of one kind does not wait for work of another.
enum class Lane {
    General,
    Scan,   // finding the applications
    Launch, // reading what is to be opened
    Icons,  // decoding
    Save,   // writing what is kept
};
inline constexpr std::size_t laneCount = 5;

// The main thread's clock and queue: the only way in the program to learn the time or to do something later.
// All operations but `post` are called on the main thread.
class MainQueue {
public:
    using Work = std::function<void()>;

    MainQueue() = default;
    MainQueue(const MainQueue&) = delete;
    MainQueue& operator=(const MainQueue&) = delete;
    virtual ~MainQueue() = default;

    // Seconds on a clock that never goes back. Only differences mean anything.
    [[nodiscard]] virtual double now() const = 0;

    // The date and time of day in UTC, as the user's machine has it: it may go back.
    [[nodiscard]] virtual std::chrono::sys_seconds date() const = 0;

    // Runs the work on the main thread after what is running now. May be called on any thread.
    virtual void post(Work work) = 0;

    // Runs the work on the main thread once `seconds` have passed.
    virtual DelayedWork postAfter(double seconds, Work work) = 0;

    // Runs `work` away from the main thread, then `thenOnMain` on it. `work` gets values and shares nothing.
    void runInBackground(Work work, Work thenOnMain, Lane lane = Lane::General) {
        start(lane, std::move(work), std::move(thenOnMain));
    }

    // The same for work that answers with a value: `then(value)` runs on the main thread.
    template<typename Task, typename Then>
    void compute(Task task, Then then, Lane lane = Lane::General) {
        using Value = decltype(task());
        auto value = std::make_shared<Value>();
        runInBackground([task = std::move(task), value]() mutable { *value = task(); },
                        [then = std::move(then), value]() mutable { then(std::move(*value)); }, lane);
    }

private:
    virtual void start(Lane lane, Work work, Work thenOnMain) = 0;
};

} // namespace amberquill
