#pragma once

#include <atomic>
#include <functional>
#include <utility>

namespace amberquill {

// Work on its way to another thread. Qt's locks order the hand-over, but Qt is not built for the thread
// sanitizer: what it sees is this flag.
class HandedOver {
public:
    explicit HandedOver(std::function<void()> work)
        : work_(std::move(work)) {
        isReady_.store(true, std::memory_order_release);
    }

    void run() {
        if (isReady_.load(std::memory_order_acquire)) {
            work_();
        }
    }

private:
    std::function<void()> work_;
    std::atomic<bool> isReady_ = false;
};

} // namespace amberquill
