#pragma once

#include "platform/MainQueue.h"

#include <algorithm>
#include <memory>
#include <stdexcept>
#include <vector>

namespace amberquill {

// A main queue with virtual time, which a test advances. Background work runs on the next run of the queue.
class ManualQueue final : public MainQueue {
public:
    [[nodiscard]] double now() const override { return now_; }

    [[nodiscard]] std::chrono::sys_seconds date() const override { return date_; }
    void setDate(std::chrono::sys_seconds date) { date_ = date; }

    void post(Work work) override { add(now_, std::move(work)); }

    // Runs all work that is due now, and the work that this posts.
    void runPosted() { advance(0); }

    // Advances the time and runs the work that becomes due, each at its own time, in the order of times and
    // then of posting. Throws if the work does not end because it posts itself again at once.
    void advance(double seconds) {
        const double end = now_ + seconds;
        // Deadlines are sums of decimals such as 0.18 and 0.12, with rounding errors.
        constexpr double rounding = 0.5e-6;
        constexpr int mostWork = 1'000'000;
        for (int done = 0;; ++done) {
            const auto next =
                std::min_element(waiting_.begin(), waiting_.end(), [](const Entry& a, const Entry& b) {
                    return a.due < b.due || (a.due == b.due && a.serial < b.serial);
                });
            if (next == waiting_.end() || next->due > end + rounding) {
                break;
            }
            if (done == mostWork) {
                throw std::runtime_error("a queue's work does not end");
            }
            now_ = std::max(now_, next->due);
            const Work work = std::move(next->work);
            waiting_.erase(next);
            work();
        }
        now_ = std::max(now_, end);
    }

    // The number of waiting pieces of work, including cancelled ones.
    [[nodiscard]] std::size_t waiting() const { return waiting_.size(); }

    // The number of waiting pieces of delayed work that are not cancelled.
    [[nodiscard]] std::size_t timers() const {
        return static_cast<std::size_t>(
            std::count_if(waiting_.begin(), waiting_.end(), [](const Entry& entry) {
                return entry.cancelled != nullptr && !*entry.cancelled;
            }));
    }

private:
    struct Entry {
        double due;
        std::size_t serial;
        Work work;
        std::shared_ptr<const bool> cancelled; // of delayed work
    };

    [[nodiscard]] std::function<void(Work)> poster() const override {
        return [weak = std::weak_ptr(self_)](Work work) {
            if (const auto self = weak.lock()) {
                (*self)->post(std::move(work));
            }
        };
    }

    void wait(double seconds, Work work, std::shared_ptr<const bool> cancelled) override {
        add(
            now_ + std::max(seconds, 0.0),
            [cancelled, work = std::move(work)] {
                if (!*cancelled) {
                    work();
                }
            },
            cancelled);
    }

    void start(Lane /*lane*/, Work work, Work thenOnMain) override {
        post([work = std::move(work), then = std::move(thenOnMain)] {
            work();
            then();
        });
    }

    void add(double due, Work work, std::shared_ptr<const bool> cancelled = nullptr) {
        waiting_.push_back({due, nextSerial_++, std::move(work), std::move(cancelled)});
    }

    std::shared_ptr<ManualQueue*> self_ = std::make_shared<ManualQueue*>(this);
    double now_ = 1000.0;
    std::chrono::sys_seconds date_ = {};
    std::size_t nextSerial_ = 0;
    std::vector<Entry> waiting_;
};

} // namespace amberquill
