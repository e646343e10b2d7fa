#pragma once

#include "platform/MainQueue.h"

#include <chrono>
#include <condition_variable>
#include <functional>
#include <memory>
#include <mutex>
#include <optional>
#include <thread>
#include <utility>

namespace amberquill {

// A value that is read from the disk on a thread of its own while the program starts. A disk that does not
// answer keeps nobody waiting: the thread goes on by itself, and what `read` refers to has to be there for as
// long as it does.
template<typename Value>
class EarlyReading {
public:
    using Clock = std::chrono::steady_clock;

    // Once. Any thread.
    void start(std::function<Value()> read) {
        const std::scoped_lock lock(state_->mutex);
        state_->isUnderWay = true;
        std::thread([state = state_, read = std::move(read)] {
            auto value = read();
            const std::scoped_lock ended(state->mutex);
            state->isUnderWay = false;
            if (state->then) {
                state->then(std::move(value));
            } else {
                state->value = std::move(value);
            }
            state->changed.notify_all();
        }).detach();
    }

    // The value, if it is there by then; only once. What has not been started is not waited for.
    std::optional<Value> takeBy(Clock::time_point deadline) {
        std::unique_lock lock(state_->mutex);
        state_->changed.wait_until(lock, deadline, [this] { return !state_->isUnderWay; });
        return std::exchange(state_->value, std::nullopt);
    }

    void waitUntil(Clock::time_point deadline) {
        std::unique_lock lock(state_->mutex);
        state_->changed.wait_until(lock, deadline, [this] { return !state_->isUnderWay; });
    }

    // The value, however long it takes.
    std::optional<Value> take() {
        std::unique_lock lock(state_->mutex);
        state_->changed.wait(lock, [this] { return !state_->isUnderWay; });
        return std::exchange(state_->value, std::nullopt);
    }

    // Has `then` called with the value on the main thread as soon as it is there. The queue outlives the
    // reading, or the process ends with it.
    void whenThere(MainQueue& queue, std::function<void(Value)> then) {
        const auto deliver = [&queue, then = std::move(then)](Value value) {
            queue.post(
                [then, value = std::make_shared<Value>(std::move(value))] { then(std::move(*value)); });
        };
        const std::scoped_lock lock(state_->mutex);
        if (state_->value) {
            deliver(*std::exchange(state_->value, std::nullopt));
        } else {
            state_->then = deliver;
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

    std::shared_ptr<State> state_ = std::make_shared<State>();
};

} // namespace amberquill
