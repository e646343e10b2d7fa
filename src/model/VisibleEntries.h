#pragma once

#include "data/GridMetrics.h"
#include "data/LaunchItem.h"

#include <QPointF>
#include <vector>

namespace amberquill {

// An item placed on a page for drawing.
struct VisibleEntry {
    LaunchItem item;
    QPointF center; // of its cell, in the launcher's content
    int index = 0;  // in the displayed list

    bool operator==(const VisibleEntry&) const = default;
};

// ⌈items ÷ slots⌉, at least 1: an empty layout has one page.
int pageCount(std::size_t itemCount, int slotsPerPage);

// The items of the page shown and of its two neighbours, in page order and then slot order. Takes time with
// the size of a page, not with the number of items.
std::vector<VisibleEntry> visibleEntries(const LaunchItems& items, const GridMetrics& metrics, int page,
                                         double scrollOffset);

} // namespace amberquill
