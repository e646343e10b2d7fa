#include "views/TileModel.h"

#include "motion/Timeline.h"

#include <algorithm>

namespace amberquill {

TileModel::TileModel(LauncherModel& model, QObject* parent)
    : TileRows(parent)
    , model_(model) {
    connect(&model, &LauncherModel::itemsChanged, this, &TileModel::refresh);
    connect(&model, &LauncherModel::searchResultsChanged, this, &TileModel::refresh);
    connect(&model, &LauncherModel::namesChanged, this, &TileModel::refresh);
    connect(&model, &LauncherModel::pageChanged, this, &TileModel::refresh);
    connect(&model, &LauncherModel::pressedIDChanged, this, &TileModel::refresh);
    connect(&model, &LauncherModel::mergeTargetIDChanged, this, &TileModel::refresh);
    connect(&model, &LauncherModel::dragChanged, this, &TileModel::refresh);
    connect(&model, &LauncherModel::presentedChanged, this, &TileModel::settleWhenAtRest);
    connect(&model, &LauncherModel::sizeChanged, this, &TileModel::relayout);
    connect(&model, &LauncherModel::gridChanged, this, &TileModel::relayout);
    connect(&Timeline::shared(), &Timeline::stopped, this, &TileModel::settleWhenAtRest);
    relayout();
}

void TileModel::relayout() {
    setLayout(TileLayout::of(model_.metrics(), devicePixelRatio()));
    refresh();
}

void TileModel::refresh() {
    const int page = model_.page();
    const int last = model_.displayedPageCount() - 1;
    std::erase_if(pages_, [last](int each) { return each > last; });
    if (!std::binary_search(pages_.begin(), pages_.end(), page)) {
        pages_.insert(std::upper_bound(pages_.begin(), pages_.end(), page), page);
    }
    become(rowsOf(pages_));
    settleWhenAtRest();
}

// Neighbours are made, and pages left behind dropped, in a moment of their own: never in the middle of a
// change, never while something moves.
void TileModel::settleWhenAtRest() {
    if (settlePosted_ || pages_ == pagesAtRest()) {
        return;
    }
    settlePosted_ = true;
    QMetaObject::invokeMethod(this, &TileModel::settle, Qt::QueuedConnection);
}

void TileModel::settle() {
    settlePosted_ = false;
    if (!Timeline::shared().isIdle() || !model_.presented()) {
        return; // the timeline tells when all rests
    }
    pages_ = pagesAtRest();
    become(rowsOf(pages_));
}

std::vector<int> TileModel::pagesAtRest() const {
    std::vector<int> pages;
    const int last = std::min(model_.displayedPageCount() - 1, model_.page() + 1);
    for (int page = std::max(model_.page() - 1, 0); page <= last; ++page) {
        pages.push_back(page);
    }
    return pages;
}

std::vector<TileModel::Row> TileModel::rowsOf(const std::vector<int>& pages) const {
    std::vector<Row> rows;
    const GridMetrics metrics = model_.metrics();
    if (metrics.size.width() <= 0) {
        return rows;
    }
    const LaunchItems& items = model_.displayedItems();
    const int slots = metrics.slotsPerPage();
    const QString dragged = model_.drag() ? model_.drag()->id : QString();
    for (const int page : pages) {
        const QPointF pageStart(page * metrics.size.width(), 0);
        for (int slot = 0; slot < slots; ++slot) {
            const auto index = static_cast<std::size_t>(page) * static_cast<std::size_t>(slots) +
                               static_cast<std::size_t>(slot);
            if (index >= items.size()) {
                break;
            }
            const LaunchItem& item = items[index];
            const QPointF corner = pageStart + metrics.tileRect(metrics.cellCenter(slot)).topLeft();
            const QString id = item.id();
            rows.push_back({.id = id,
                            .item = item,
                            .name = model_.name(item),
                            .place = snapped(corner, devicePixelRatio()),
                            .pressed = id == model_.pressedID(),
                            .mergeTarget = id == model_.mergeTargetID(),
                            .highlighted = index == 0 && model_.isSearching(),
                            .dragged = id == dragged});
        }
    }
    return rows;
}

} // namespace amberquill
