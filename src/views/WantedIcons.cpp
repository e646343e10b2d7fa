#include "views/WantedIcons.h"

#include "data/IconCache.h"
#include "views/TileRows.h"

#include <algorithm>
#include <cmath>

namespace amberquill {

namespace {

constexpr qsizetype shownInFolderIcon = 9;

void add(QSet<QString>& paths, std::span<const LaunchItem> items) {
    for (const LaunchItem& item : items) {
        if (const QString* path = item.asApp()) {
            paths.insert(*path);
        } else if (const Folder* folder = item.asFolder()) {
            for (const QString& each : folder->apps.first(std::min(folder->apps.size(), shownInFolderIcon))) {
                paths.insert(each);
            }
        }
    }
}

} // namespace

WantedIcons::WantedIcons(const LauncherModel& model, const TileRows& tiles, IconCache& cache, QObject* parent)
    : QObject(parent)
    , model_(model)
    , tiles_(tiles)
    , cache_(cache) {
    connect(&model, &LauncherModel::itemsChanged, this, &WantedIcons::updateNeeded);
    connect(&model, &LauncherModel::searchResultsChanged, this, &WantedIcons::updateNeeded);
    connect(&model, &LauncherModel::gridChanged, this, &WantedIcons::updateNeeded);
    connect(&model, &LauncherModel::openFolderIDChanged, this, &WantedIcons::updateNeeded);
    connect(&model, &LauncherModel::pageChanged, this, [this] {
        updateNeeded();
        prefetchNeighbours();
    });
    updateNeeded();
}

void WantedIcons::updateNeeded() {
    QSet<QString> paths;
    add(paths, itemsOf(model_.items(), 0));
    if (model_.isSearching()) {
        addPages(paths, model_.displayedItems(), model_.page());
    } else {
        browsed_ = model_.page();
    }
    addPages(paths, model_.items(), browsed_);
    const auto open = model_.openFolderID();
    if (const Folder* folder = open ? model_.folder(*open) : nullptr) {
        for (const QString& path : folder->apps) {
            paths.insert(path);
        }
    }
    cache_.setNeeded(paths);
}

void WantedIcons::prefetchNeighbours() {
    if (!model_.presented()) {
        return;
    }
    const double ratio = tiles_.devicePixelRatio();
    const int edge = static_cast<int>(std::lround(tiles_.layout().icon.width() * ratio));
    const int page = model_.page();
    // In the order in which they are likely to be seen.
    for (const int each : {page, page + 1, page - 1}) {
        for (const LaunchItem& item : itemsOf(model_.displayedItems(), each)) {
            if (const QString* path = item.asApp(); path != nullptr && !cache_.isKnown(*path, edge)) {
                cache_.icon(*path, edge);
            }
        }
    }
}

void WantedIcons::addPages(QSet<QString>& paths, const LaunchItems& items, int page) const {
    for (int each = page - 1; each <= page + 1; ++each) {
        add(paths, itemsOf(items, each));
    }
}

std::span<const LaunchItem> WantedIcons::itemsOf(const LaunchItems& items, int page) const {
    const auto slots = static_cast<std::size_t>(std::max(model_.columns() * model_.rows(), 1));
    const std::size_t first = static_cast<std::size_t>(std::max(page, 0)) * slots;
    if (page < 0 || first >= items.size()) {
        return {};
    }
    return std::span(items).subspan(first, std::min(slots, items.size() - first));
}

} // namespace amberquill
