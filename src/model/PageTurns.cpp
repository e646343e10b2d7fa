#include "model/PageTurns.h"

#include <cmath>
#include <utility>

namespace amberquill {

namespace {

constexpr double wheelThreshold = 0.5;
constexpr double wheelRest = 0.3; // seconds
constexpr double horizontalSwipe = 90;
constexpr double verticalSwipe = 60;
constexpr double resistance = 0.25;

bool isVertical(const QPointF& swipe) {
    return std::abs(swipe.y()) > std::abs(swipe.x());
}

} // namespace

int PageTurns::wheel(const QPointF& delta, int page, double now) {
    const double travel = std::abs(delta.x()) > std::abs(delta.y()) ? delta.x() : delta.y();
    if (std::abs(travel) <= wheelThreshold || now - lastWheelPage_ <= wheelRest) {
        return page;
    }
    lastWheelPage_ = now;
    return travel < 0 ? page + 1 : page - 1;
}

double PageTurns::move(const QPointF& delta, int page, int pageCount) {
    swipe_ += delta;
    if (isVertical(swipe_)) {
        return 0;
    }
    const bool pastFirst = page == 0 && swipe_.x() > 0;
    const bool pastLast = page == pageCount - 1 && swipe_.x() < 0;
    return pastFirst || pastLast ? swipe_.x() * resistance : swipe_.x();
}

int PageTurns::end(int page) {
    const QPointF swipe = std::exchange(swipe_, {});
    const double travel = isVertical(swipe) ? swipe.y() : swipe.x();
    const double threshold = isVertical(swipe) ? verticalSwipe : horizontalSwipe;
    if (travel < -threshold) {
        return page + 1;
    }
    return travel > threshold ? page - 1 : page;
}

} // namespace amberquill
