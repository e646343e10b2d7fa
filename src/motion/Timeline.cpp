#include "motion/Timeline.h"

#include "platform/MainQueue.h"

#include <algorithm>

namespace amberquill {

Moving::~Moving() {
    Timeline::shared().remove(*this);
}

Timeline& Timeline::shared() {
    static Timeline theTimeline;
    return theTimeline;
}

double Timeline::now() const {
    return queue_ != nullptr ? queue_->now() : 0;
}

void Timeline::add(Moving& moving) {
    if (std::find(moving_.begin(), moving_.end(), &moving) != moving_.end()) {
        return;
    }
    moving_.push_back(&moving);
    if (moving_.size() == 1) {
        Q_EMIT started();
    }
}

void Timeline::remove(Moving& moving) {
    if (std::erase(moving_, &moving) > 0 && moving_.empty()) {
        Q_EMIT stopped();
    }
}

void Timeline::advance() {
    const double time = now();
    // Others may be added or removed during the loop: removed ones are not called.
    const std::vector<Moving*> frame = moving_;
    for (Moving* moving : frame) {
        const bool stillHere = std::find(moving_.begin(), moving_.end(), moving) != moving_.end();
        if (stillHere && !moving->advance(time)) {
            remove(*moving);
        }
    }
}

FrameDriver::FrameDriver(Timeline& timeline, QObject* parent)
    : QAbstractAnimation(parent)
    , timeline_(timeline) {
    connect(&timeline, &Timeline::started, this, [this] { start(); });
    connect(&timeline, &Timeline::stopped, this, &QAbstractAnimation::stop);
}

void FrameDriver::updateCurrentTime(int /*milliseconds*/) {
    timeline_.advance();
}

} // namespace amberquill
