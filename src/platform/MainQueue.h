// platform/: the services that the launcher asks of a desktop, as abstract classes. Where a desktop may have
// no such service, there is a null object: callers never test for null and never ask where they run.
// platform/linux/ implements them. platform/common/ holds the few classes that any desktop's implementation
// shares with the floors above.
#pragma once

#include "platform/Context.h"

#include <chrono>
#include <cstddef>
#include <functional>
#include <memory>
#include <optional>
#include <tuple>
#include <type_traits>
#include <utility>

namespace amberquill {

// Delayed work on the main queue. Destroying the handle, or assigning other work to it, cancels the work.
// Main thread only.
class [[nodiscard]] DelayedWork {
public:
    DelayedWork() = default;
    explicit DelayedWork(std::shared_ptr<bool> cancelled)
        : cancelled_(std::move(cancelled)) {}
    DelayedWork(const DelayedWork&) = delete;
    DelayedWork& operator=(const DelayedWork&) = delete;
    DelayedWork(DelayedWork&&) = default;
    DelayedWork& operator=(DelayedWork&& other) noexcept {
        if (this != &other) {
            cancel();
            cancelled_ = std::move(other.cancelled_);
        }
        return *this;
    }
    ~DelayedWork() { cancel(); }

    // The work will not run. Does nothing if it has run already.
    void cancel() {
        if (cancelled_) {
            *cancelled_ = true;
        }
    }

private:
    std::shared_ptr<bool> cancelled_;
};

// Kinds of background work. Work of one kind does not wait for work of another.
enum class Lane {
    General,
    Scan,   // finding the applications
    Launch, // reading the application to be opened
    Icons,  // decoding
    Save,   // writing files
    Apart,  // work that may hang: each piece has a thread of its own, and the program's end does not wait for
            // it
};
inline constexpr std::size_t sharedLaneCount = 5; // all but the last

// The main thread's clock and queue: the program's only source of time, timers and background work. All
// operations but `post` are called on the main thread. Waits that block a thread have a QDeadlineTimer
// instead.
class MainQueue {
public:
    using Work = std::function<void()>;

    MainQueue() = default;
    MainQueue(const MainQueue&) = delete;
    MainQueue& operator=(const MainQueue&) = delete;
    virtual ~MainQueue() = default;

    // Seconds on a clock that never goes back. Only differences mean anything.
    [[nodiscard]] virtual double now() const = 0;

    // The date and time of day in UTC, by the machine's clock, which may be set back.
    [[nodiscard]] virtual std::chrono::sys_seconds date() const = 0;

    // Runs the work on the main thread, after the work that runs now. May be called on any thread.
    virtual void post(Work work) = 0;

    // The same, unless the context has been destroyed by then.
    template<typename Bound>
    void then(const Context& context, Bound work) {
        post(context.bind(std::move(work)));
    }

    // Runs the work on the main thread after `seconds`, unless the handle has been destroyed by then.
    [[nodiscard]] DelayedWork postAfter(double seconds, Work work) {
        auto cancelled = std::make_shared<bool>(false);
        wait(seconds, std::move(work), cancelled);
        return DelayedWork(std::move(cancelled));
    }

    // The same for work that only the end of its context cancels.
    template<typename Bound>
    void thenAfter(const Context& context, double seconds, Bound work) {
        wait(seconds, context.bind(std::move(work)), std::make_shared<bool>(false));
    }

    // Runs `work` on another thread, then `thenOnMain` on the main thread. `work` captures values and shares
    // nothing. `thenOnMain` is bound to a context, or all that it uses outlives the queue.
    void runInBackground(Work work, Work thenOnMain, Lane lane = Lane::General) {
        start(lane, std::move(work), std::move(thenOnMain));
    }

    // The same for work with a result: `then(result)` runs on the main thread, unless the context has been
    // destroyed by then.
    template<typename Task, typename Then>
    void compute(const Context& context, Task task, Then then, Lane lane = Lane::General) {
        auto value = std::make_shared<std::optional<decltype(task())>>();
        runInBackground([task = std::move(task), value]() mutable { value->emplace(task()); },
                        context.bind([then = std::move(then), value]() mutable { then(std::move(**value)); }),
                        lane);
    }

    // A function for answers from other threads: it posts a call of `work` with the function's arguments. It
    // may be called on any thread, also after this queue has been destroyed. Once the context has been
    // destroyed it does nothing, and its arguments end on the calling thread.
    template<typename Bound>
    [[nodiscard]] auto answer(const Context& context, Bound work) const {
        auto bound = std::make_shared<decltype(context.bind(std::move(work)))>(context.bind(std::move(work)));
        return [post = poster(), bound, life = context.life()](auto&&... values) {
            if (life.expired()) {
                return;
            }
            auto kept = std::make_shared<std::tuple<std::decay_t<decltype(values)>...>>(
                std::forward<decltype(values)>(values)...);
            post([bound, kept] { std::apply(*bound, std::move(*kept)); });
        };
    }

private:
    // The same as `post`, as a function that may outlive the queue and then does nothing. Called on any
    // thread.
    [[nodiscard]] virtual std::function<void(Work)> poster() const = 0;

    // The work does not run if it is cancelled when its time comes.
    virtual void wait(double seconds, Work work, std::shared_ptr<const bool> cancelled) = 0;
    virtual void start(Lane lane, Work work, Work thenOnMain) = 0;
};

} // namespace amberquill
