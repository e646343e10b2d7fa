#include "model/HitTest.h"

#include "data/FolderMetrics.h"

namespace amberquill {

namespace {

Hit hitFolder(const QPointF& point, const Folder& folder, const GridMetrics& metrics) {
    const FolderMetrics panel = FolderMetrics::of(static_cast<int>(folder.apps.size()), metrics);
    if (!holds(panel.panelRect, point)) {
        return {Hit::OutsideFolder{}};
    }
    const QRectF tile = metrics.tileRect({0, 0});
    const QRectF scaled(tile.topLeft() * panel.scale, tile.size() * panel.scale);
    for (int index = 0; index < static_cast<int>(folder.apps.size()); ++index) {
        if (holds(scaled.translated(panel.cellCenter(index)), point)) {
            return {Hit::FolderItem{folder.apps[index]}};
        }
    }
    return {Hit::FolderPanel{}};
}

Hit hitGrid(const QPointF& point, const HitPage& page) {
    const QPointF onPage(point.x() - page.scrollOffset, point.y());
    const auto slot = page.metrics.slotAt(onPage);
    if (!slot) {
        return {Hit::Empty{}};
    }
    const auto index =
        static_cast<std::size_t>(page.page) * static_cast<std::size_t>(page.metrics.slotsPerPage()) +
        static_cast<std::size_t>(*slot);
    if (index >= page.items.size() || !holds(page.metrics.tileRect(page.metrics.cellCenter(*slot)), onPage)) {
        return {Hit::Empty{}};
    }
    return {Hit::GridItem{page.items[index].id()}};
}

} // namespace

Hit hitTest(const QPointF& point, const HitPage& page, const Folder* openFolder) {
    return openFolder != nullptr ? hitFolder(point, *openFolder, page.metrics) : hitGrid(point, page);
}

} // namespace amberquill
