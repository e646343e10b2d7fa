#include "platform/BackgroundLane.h"

#include "platform/HandedOver.h"

#include <QRunnable>
#include <algorithm>
#include <utility>

namespace amberquill {

namespace {

// A thread without work ends after so long: the lanes of a launcher at rest have none.
constexpr std::chrono::milliseconds idleThreads{5000};

} // namespace

class BackgroundLane::Task final : public QRunnable {
public:
    Task(BackgroundLane& lane, Work work)
        : lane_(lane)
        , handedOver_([this, work = std::move(work)] { runInPlace(work); }) {
        const std::scoped_lock lock(lane_.mutex_);
        ++lane_.waiting_;
    }
    Task(const Task&) = delete;
    Task& operator=(const Task&) = delete;
    ~Task() override {
        const std::scoped_lock lock(lane_.mutex_);
        lane_.waiting_ -= hasBegun_ ? 0 : 1;
    }

    void run() override { handedOver_.run(); }

private:
    void runInPlace(const Work& work) {
        std::unique_lock lock(lane_.mutex_);
        --lane_.waiting_;
        hasBegun_ = true;
        const auto self = lane_.begun_.insert(lane_.begun_.end(), Clock::now());
        lock.unlock();
        work();
        lock.lock();
        lane_.begun_.erase(self);
    }

    BackgroundLane& lane_;
    bool hasBegun_ = false;
    HandedOver handedOver_;
};

BackgroundLane::BackgroundLane(const Bounds& bounds)
    : bounds_(bounds) {
    pool_.setMaxThreadCount(bounds_.width);
    pool_.setExpiryTimeout(static_cast<int>(idleThreads.count()));
}

BackgroundLane::~BackgroundLane() {
    pool_.waitForDone();
    seeEnds();
}

void BackgroundLane::start(Work work) {
    passStuck();
    pool_.start(new Task(*this, std::move(work)));
}

void BackgroundLane::setWidth(int width) {
    bounds_.width = width;
    passStuck();
}

bool BackgroundLane::isCrowded() const {
    const std::scoped_lock lock(mutex_);
    return waiting_ + static_cast<int>(begun_.size()) > bounds_.width && waiting_ > 0;
}

void BackgroundLane::passStuck() {
    const auto stuckSince = Clock::now() - patience;
    std::unique_lock lock(mutex_);
    const auto stuck = std::count_if(begun_.begin(), begun_.end(),
                                     [stuckSince](Clock::time_point begun) { return begun <= stuckSince; });
    lock.unlock();
    pool_.setMaxThreadCount(
        std::min(bounds_.width + static_cast<int>(stuck), std::max(bounds_.most, bounds_.width)));
}

void BackgroundLane::dropWaiting() {
    pool_.clear();
}

bool BackgroundLane::waitUntil(Clock::time_point deadline) {
    const auto left = std::chrono::ceil<std::chrono::milliseconds>(deadline - Clock::now());
    const bool haveEnded = pool_.waitForDone(std::max(0, static_cast<int>(left.count())));
    seeEnds();
    return haveEnded;
}

// The wait itself orders what follows after the work, but the thread sanitizer does not see Qt's: what it
// sees is this lock, which all work takes at its end.
void BackgroundLane::seeEnds() const {
    const std::scoped_lock lock(mutex_);
}

} // namespace amberquill
