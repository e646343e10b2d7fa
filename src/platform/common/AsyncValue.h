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

// A value that is made on a thread of its own, while the caller goes on. A disk that does not answer keeps
// nobody waiting: the thread goes on by itself, and what `make` refers to has to be there for as long as it
// does. Copies refer to the same value. Safe on any thread.
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

    // From now on this is the value: for a maker that has more than one to give.
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

    // The value, once it is there. Waits for one that has not been started, too. Not to be used with those
    // below, which take the value away.
    [[nodiscard]] const Value& get() const {
        std::unique_lock lock(state_->mutex);
        state_->changed.wait(lock, [this] { return state_->value.has_value(); });
        return *state_->value;
    }

    // The value, if it is there by then; only once. One that has not been started is not waited for.
    [[nodiscard]] std::optional<Value> takeBy(QDeadlineTimer deadline) const {
        std::unique_lock lock(state_->mutex);
        wait(lock, deadline);
        return std::exchange(state_->value, std::nullopt);
    }

    // Waits as long for the end of what was started.
    void waitUntil(QDeadlineTimer deadline) const {
        std::unique_lock lock(state_->mutex);
        wait(lock, deadline);
    }

    // The value, however long it takes.
    [[nodiscard]] std::optional<Value> take() const {
        return takeBy(QDeadlineTimer(QDeadlineTimer::Forever));
    }

    // Has `then` called with the value on the main thread as soon as it is there, unless the context is gone
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
