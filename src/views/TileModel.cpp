#include "views/TileModel.h"

#include "motion/Timeline.h"

#include <QSet>
#include <algorithm>
#include <iterator>

namespace amberquill {

namespace {

// How many rows are made at once, and the seconds until the next ones: one frame, of which making them takes
// a small part.
constexpr int madeAtOnce = 6;
constexpr double pauseBetween = 0.016;

// The limit of pages that exist while something moves. With a held arrow key the strip lags about four pages
// behind.
constexpr std::size_t mostPages = 8;

bool holds(const std::vector<int>& pages, int page) {
    return std::binary_search(pages.begin(), pages.end(), page);
}

} // namespace

TileModel::TileModel(LauncherModel& model, MainQueue& queue, QObject* parent)
    : TileRows(parent)
    , model_(model)
    , queue_(queue) {
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
    const auto isBeyondTheLast = [last = model_.displayedPageCount() - 1](int each) { return each > last; };
    std::erase_if(whole_, isBeyondTheLast);
    std::erase_if(begun_, isBeyondTheLast);
    if (!holds(whole_, page)) {
        whole_.insert(std::upper_bound(whole_.begin(), whole_.end(), page), page);
        std::erase(begun_, page);
    }
    noteTurn(page);
    dropFarBehind();
    setRows(existingRows());
    settleWhenAtRest();
}

void TileModel::noteTurn(int page) {
    std::erase(turned_, page);
    turned_.insert(turned_.begin(), page);
    turned_.resize(std::min(turned_.size(), mostPages));
}

// Drops the pages that were turned to longest ago.
void TileModel::dropFarBehind() {
    const auto age = [this](int page) { return std::find(turned_.begin(), turned_.end(), page); };
    while (whole_.size() > mostPages) {
        whole_.erase(
            std::max_element(whole_.begin(), whole_.end(), [&age](int a, int b) { return age(a) < age(b); }));
    }
}

// Making neighbours and dropping other pages is delayed work: never in the middle of a change, never while
// something moves.
void TileModel::settleWhenAtRest() {
    if (whole_ != pagesAtRest() && !isSettling_) {
        isSettling_ = true;
        settleLater();
    }
}

void TileModel::settleLater() {
    settling_ = queue_.postAfter(pauseBetween, [this] {
        isSettling_ = settleSome();
        if (isSettling_) {
            settleLater();
        }
    });
}

// Whether there is more to do.
bool TileModel::settleSome() {
    const std::vector<int> wanted = pagesAtRest();
    if (!Timeline::shared().isIdle() || !model_.presented()) {
        return false; // settling begins again when the timeline stops
    }
    if (!dropOthers(wanted)) {
        begun_.clear();
        std::set_difference(wanted.begin(), wanted.end(), whole_.begin(), whole_.end(),
                            std::back_inserter(begun_));
        int room = madeAtOnce;
        setRows(rowsWith(room));
        if (room > 0) {
            whole_ = wanted;
            begun_.clear();
        }
    }
    return whole_ != wanted;
}

void TileModel::dropPagesLeftBehind() {
    dropOthers(pagesAtRest());
}

// False: there were none.
bool TileModel::dropOthers(const std::vector<int>& wanted) {
    const auto isOther = [&wanted](int page) { return !holds(wanted, page); };
    if (std::erase_if(whole_, isOther) + std::erase_if(begun_, isOther) == 0) {
        return false;
    }
    setRows(existingRows());
    return true;
}

std::vector<int> TileModel::pagesAtRest() const {
    std::vector<int> pages;
    const int last = std::min(model_.displayedPageCount() - 1, model_.page() + 1);
    for (int page = std::max(model_.page() - 1, 0); page <= last; ++page) {
        pages.push_back(page);
    }
    return pages;
}

std::vector<TileModel::Row> TileModel::rowsWith(int& room) const {
    std::vector<int> pages;
    std::merge(whole_.begin(), whole_.end(), begun_.begin(), begun_.end(), std::back_inserter(pages));
    QSet<QString> present;
    if (!begun_.empty()) {
        for (const Row& row : rows()) {
            present.insert(row.id);
        }
    }
    std::vector<Row> result;
    for (const int page : pages) {
        const bool isWhole = holds(whole_, page);
        for (Row& row : rowsOf(page)) {
            const bool isThere = isWhole || present.contains(row.id);
            if (isThere || room > 0) {
                room -= isThere ? 0 : 1;
                result.push_back(std::move(row));
            }
        }
    }
    return result;
}

std::vector<TileModel::Row> TileModel::existingRows() const {
    int none = 0;
    return rowsWith(none);
}

std::vector<TileModel::Row> TileModel::rowsOf(int page) const {
    std::vector<Row> rows;
    const GridMetrics metrics = model_.metrics();
    if (metrics.size.width() <= 0) {
        return rows;
    }
    const LaunchItems& items = model_.displayedItems();
    const int slots = metrics.slotsPerPage();
    const QString dragged = model_.drag() ? model_.drag()->id : QString();
    const QPointF pageStart(page * metrics.size.width(), 0);
    for (int slot = 0; slot < slots; ++slot) {
        const auto index =
            static_cast<std::size_t>(page) * static_cast<std::size_t>(slots) + static_cast<std::size_t>(slot);
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
    return rows;
}

} // namespace amberquill
