#pragma once

#include "platform/MainQueue.h"
#include "platform/common/Thread.h"

#include <QDeadlineTimer>
#include <chrono>
#include <condition_variable>
#include <functional>
#include <memory>
#include <mutex>
#include <optional>
#include <utility>

namespace amberquill {

// A value that is computed on a thread of its own. Nothing waits for a thread that hangs, for instance on a
// disk that does not answer; all that `make` refers to has to outlive the thread. Copies refer to the same
// value. Safe on any thread.
template<typename Value>
class AsyncValue {
public:
    // Once.
    void start(std::function<Value()> make) const {
        {
            const std::scoped_lock lock(state_->mutex);
            state_->isUnderWay = true;
        }
        const auto work = [value = *this, make = std::move(make)] { value.give(make()); };
        if (!startThread(work)) {
            work();
        }
    }

    // Sets the value, for producers that are not started here.
    void give(Value value) const {
        const std::scoped_lock lock(state_->mutex);
        state_->isUnderWay = false;
        if (state_->then) {
            std::exchange(state_->then, nullptr)(std::move(value));
        } else {
            state_->value = std::move(value);
        }
        state_->changed.notify_all();
    }

    // Waits for the value, even if it has not been started. Not to be combined with the functions below,
    // which take the value away.
    [[nodiscard]] const Value& get() const {
        std::unique_lock lock(state_->mutex);
        state_->changed.wait(lock, [this] { return state_->value.has_value(); });
        return *state_->value;
    }

    // The value, if it is there by the deadline; only once. Does not wait if nothing was started.
    [[nodiscard]] std::optional<Value> takeBy(QDeadlineTimer deadline) const {
        std::unique_lock lock(state_->mutex);
        wait(lock, deadline);
        return std::exchange(state_->value, std::nullopt);
    }

    // Waits for the value without taking it.
    void waitUntil(QDeadlineTimer deadline) const {
        std::unique_lock lock(state_->mutex);
        wait(lock, deadline);
    }

    // The value, however long it takes.
    [[nodiscard]] std::optional<Value> take() const {
        return takeBy(QDeadlineTimer(QDeadlineTimer::Forever));
    }

    // Calls `then` with the value on the main thread once it is there, unless the context has been destroyed
    // by then.
    template<typename Then>
    void whenThere(const MainQueue& queue, const Context& context, Then then) const {
        std::function<void(Value)> deliver = queue.answer(context, std::move(then));
        const std::scoped_lock lock(state_->mutex);
        if (state_->value) {
            deliver(*std::exchange(state_->value, std::nullopt));
        } else {
            state_->then = std::move(deliver);
        }
    }

    [[nodiscard]] bool isUnderWay() const {
        const std::scoped_lock lock(state_->mutex);
        return state_->isUnderWay;
    }

private:
    struct State {
        std::mutex mutex;
        std::condition_variable changed;
        bool isUnderWay = false;
        std::optional<Value> value;
        std::function<void(Value)> then;
    };

    void wait(std::unique_lock<std::mutex>& lock, QDeadlineTimer deadline) const {
        const auto hasEnded = [this] { return !state_->isUnderWay; };
        if (deadline.isForever()) {
            state_->changed.wait(lock, hasEnded);
        } else {
            state_->changed.wait_for(lock, deadline.remainingTimeAsDuration(), hasEnded);
        }
    }

    std::shared_ptr<State> state_ = std::make_shared<State>();
};

} // namespace amberquill
