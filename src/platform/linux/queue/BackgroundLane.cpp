#include "platform/linux/queue/BackgroundLane.h"

#include "platform/common/Thread.h"

#include <algorithm>
#include <condition_variable>
#include <deque>
#include <list>
#include <mutex>
#include <utility>

namespace amberquill {

namespace {

// An idle thread ends after this time: an idle launcher has no lane threads.
constexpr std::chrono::seconds longestIdle{5};

} // namespace

struct BackgroundLane::State {
    std::mutex mutex; // guards the members below
    std::condition_variable workIsReady;
    std::condition_variable workHasEnded; // or a thread
    std::deque<Work> waiting;             // for a place
    std::deque<Work> ready;               // has a place; a thread will take it
    std::list<QDeadlineTimer> running;    // for each running piece, when it counts as stuck
    int places = 1;                       // pieces that may run at a time, including stuck ones
    int threads = 0;                      // each runs a piece, or takes the next one
    bool isOver = false;                  // idle threads end at once

    [[nodiscard]] bool isDone() const { return waiting.empty() && ready.empty() && running.empty(); }

    // The function that each thread runs.
    static void serve(const std::shared_ptr<State>& state) {
        std::unique_lock lock(state->mutex);
        while (state->waitForWork(lock)) {
            runNext(state, lock);
        }
        --state->threads;
        state->workHasEnded.notify_all();
    }

    // False: the thread was idle for `longestIdle` and ends.
    bool waitForWork(std::unique_lock<std::mutex>& lock) {
        workIsReady.wait_for(lock, longestIdle, [this] { return !ready.empty() || isOver; });
        return !ready.empty();
    }

    // The lock is released while the work runs.
    static void runNext(const std::shared_ptr<State>& state, std::unique_lock<std::mutex>& lock) {
        Work work = std::move(state->ready.front());
        state->ready.pop_front();
        const auto self = state->running.insert(state->running.end(), QDeadlineTimer(patience));
        lock.unlock();
        work();
        work = nullptr; // its captures are destroyed before it counts as ended
        lock.lock();
        state->running.erase(self);
        state->workHasEnded.notify_all();
        assignPlaces(state, lock);
    }

    // Gives free places to waiting work, and starts threads for it.
    static void assignPlaces(const std::shared_ptr<State>& state, std::unique_lock<std::mutex>& lock) {
        auto taken = static_cast<int>(state->ready.size() + state->running.size());
        for (; !state->waiting.empty() && taken < state->places; ++taken) {
            state->ready.push_back(std::move(state->waiting.front()));
            state->waiting.pop_front();
            state->workIsReady.notify_one();
        }
        const int free = state->threads - static_cast<int>(state->running.size());
        for (int missing = static_cast<int>(state->ready.size()) - free; missing > 0; --missing) {
            ++state->threads;
            if (!startThread([state] { serve(state); })) {
                --state->threads;
                break;
            }
        }
        // If the system cannot create a thread, the work runs on this one.
        while (state->threads == 0 && !state->ready.empty()) {
            runNext(state, lock);
        }
    }
};

BackgroundLane::BackgroundLane(const Bounds& bounds)
    : bounds_(bounds)
    , state_(std::make_shared<State>()) {
    state_->places = bounds_.width;
}

BackgroundLane::~BackgroundLane() {
    std::unique_lock lock(state_->mutex);
    state_->workHasEnded.wait(lock, [this] { return state_->isDone(); });
    state_->isOver = true;
    state_->workIsReady.notify_all();
    state_->workHasEnded.wait(lock, [this] { return state_->threads == 0; });
}

void BackgroundLane::start(Work work) {
    {
        const std::scoped_lock lock(state_->mutex);
        state_->waiting.push_back(std::move(work));
    }
    passStuck();
}

void BackgroundLane::setWidth(int width) {
    bounds_.width = width;
    passStuck();
}

bool BackgroundLane::isCrowded() const {
    const std::scoped_lock lock(state_->mutex);
    const auto all = state_->waiting.size() + state_->ready.size() + state_->running.size();
    return static_cast<int>(all) > bounds_.width && !state_->waiting.empty();
}

void BackgroundLane::passStuck() {
    std::unique_lock lock(state_->mutex);
    const auto stuck =
        std::count_if(state_->running.begin(), state_->running.end(),
                      [](const QDeadlineTimer& patienceEnds) { return patienceEnds.hasExpired(); });
    state_->places = std::min(bounds_.width + static_cast<int>(stuck), std::max(bounds_.most, bounds_.width));
    State::assignPlaces(state_, lock);
}

void BackgroundLane::dropWaiting() {
    std::deque<Work> dropped; // declared first: destroyed after the lock is released
    const std::scoped_lock lock(state_->mutex);
    dropped.swap(state_->waiting);
}

bool BackgroundLane::waitUntil(QDeadlineTimer deadline) {
    std::unique_lock lock(state_->mutex);
    return state_->workHasEnded.wait_for(lock, deadline.remainingTimeAsDuration(),
                                         [this] { return state_->isDone(); });
}

} // namespace amberquill
