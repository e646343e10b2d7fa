#include "model/Pages.h"

#include <algorithm>
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

int pageCount(std::size_t itemCount, int slotsPerPage) {
    const auto slots = static_cast<std::size_t>(std::max(slotsPerPage, 1));
    return std::max(static_cast<int>((itemCount + slots - 1) / slots), 1);
}

std::vector<VisibleEntry> visibleEntries(const LaunchItems& items, const GridMetrics& metrics, int page,
                                         double scrollOffset) {
    std::vector<VisibleEntry> entries;
    const double width = metrics.size.width();
    if (width <= 0) {
        return entries;
    }
    const int slots = metrics.slotsPerPage();
    const int last = std::min(pageCount(items.size(), slots) - 1, page + 1);
    entries.reserve(static_cast<std::size_t>(slots) * 3);
    for (int shown = std::max(0, page - 1); shown <= last; ++shown) {
        const QPointF shift((shown - page) * width + scrollOffset, 0);
        for (int slot = 0; slot < slots; ++slot) {
            const int index = shown * slots + slot;
            if (static_cast<std::size_t>(index) >= items.size()) {
                break;
            }
            entries.push_back(
                {items[static_cast<std::size_t>(index)], metrics.cellCenter(slot) + shift, index});
        }
    }
    return entries;
}

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
