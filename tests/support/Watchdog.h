#pragma once

#include <chrono>
#include <condition_variable>
#include <functional>
#include <gtest/gtest.h>
#include <mutex>
#include <thread>
#include <utility>

namespace amberquill {

// Ends a wait that would never end: after ten seconds, calls `release` on another thread and fails the test
// with `failure`.
class Watchdog {
public:
    Watchdog(const char* failure, std::function<void()> release)
        : failure_(failure)
        , release_(std::move(release))
        , thread_([this] { watch(); }) {}
    Watchdog(const Watchdog&) = delete;
    Watchdog& operator=(const Watchdog&) = delete;
    ~Watchdog() {
        {
            const std::scoped_lock lock(mutex_);
            isOver_ = true;
        }
        changed_.notify_all();
        thread_.join();
        if (hasReleased_) {
            ADD_FAILURE() << failure_;
        }
    }

private:
    void watch() {
        constexpr std::chrono::seconds longest{10};
        std::unique_lock lock(mutex_);
        if (!changed_.wait_for(lock, longest, [this] { return isOver_; })) {
            hasReleased_ = true;
            release_();
        }
    }

    const char* failure_;
    std::function<void()> release_;
    std::mutex mutex_;
    std::condition_variable changed_;
    bool isOver_ = false;
    bool hasReleased_ = false;
    std::thread thread_; // declared last: it uses the other members
};

} // namespace amberquill
