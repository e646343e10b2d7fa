#include "motion/FrameDriver.h"

#include "motion/Timeline.h"

namespace amberquill {

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
