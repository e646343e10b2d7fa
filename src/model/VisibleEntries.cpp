#include "model/VisibleEntries.h"

#include <algorithm>

namespace amberquill {

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

} // namespace amberquill
