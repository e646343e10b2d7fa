#include "views/FolderTiles.h"

#include "motion/Timeline.h"

#include <algorithm>

namespace amberquill {

namespace {

constexpr double titleInset = 60; // the title is narrower than the panel by this
constexpr double widestTitle = 420;
constexpr double titleDrop = 4; // below the middle of its band

} // namespace

FolderTiles::FolderTiles(LauncherModel& model, QObject* parent)
    : TileRows(parent)
    , model_(model) {
    connect(&model, &LauncherModel::openFolderIDChanged, this, &FolderTiles::refresh);
    connect(&model, &LauncherModel::itemsChanged, this, &FolderTiles::refresh);
    connect(&model, &LauncherModel::namesChanged, this, &FolderTiles::refresh);
    connect(&model, &LauncherModel::pressedIDChanged, this, &FolderTiles::refresh);
    connect(&model, &LauncherModel::mergeTargetIDChanged, this, &FolderTiles::refresh);
    connect(&model, &LauncherModel::searchResultsChanged, this, &FolderTiles::refresh);
    connect(&model, &LauncherModel::dragChanged, this, &FolderTiles::refresh);
    connect(&model, &LauncherModel::sizeChanged, this, &FolderTiles::refresh);
    connect(&model, &LauncherModel::gridChanged, this, &FolderTiles::refresh);
    connect(&Timeline::shared(), &Timeline::stopped, this, &FolderTiles::dropWhenGone);
}

QRectF FolderTiles::panelRect() const {
    const QRectF& panel = metrics_.panelRect;
    return {snapped(panel.topLeft(), devicePixelRatio()), snapped(panel.bottomRight(), devicePixelRatio())};
}

QRectF FolderTiles::titleBand() const {
    const QRectF& panel = metrics_.panelRect;
    const double width = std::max(std::min(panel.width() - titleInset, widestTitle), 0.0);
    return {panel.center().x() - width / 2, panel.top() + metrics_.titleHeight / 2 + titleDrop, width, 0};
}

void FolderTiles::rename(const QString& title) {
    if (const auto id = model_.openFolderID()) {
        model_.renameFolder(*id, title);
    }
}

void FolderTiles::refresh() {
    const auto id = model_.openFolderID();
    const Folder* folder = id ? model_.folder(*id) : nullptr;
    if (folder != nullptr) {
        show(*folder);
    }
    if (isOpen_ != (folder != nullptr)) {
        isOpen_ = !isOpen_;
        Q_EMIT isOpenChanged();
        dropWhenGone();
    }
}

void FolderTiles::show(const Folder& folder) {
    metrics_ = FolderMetrics::of(static_cast<int>(folder.apps.size()), model_.metrics());
    const auto layout = TileLayout::of(model_.metrics(), devicePixelRatio(), metrics_.scale);
    if (layout != this->layout()) {
        setLayout(layout);
    }
    setRows(rowsOf(folder));
    Q_EMIT panelChanged();
    if (title_ != folder.name) {
        title_ = folder.name;
        Q_EMIT titleChanged();
    }
}

// Once the panel of a closed folder has faded out.
void FolderTiles::dropWhenGone() {
    if (!isOpen_ && Timeline::shared().isIdle() && !isEmpty()) {
        setRows({});
    }
}

std::vector<FolderTiles::Row> FolderTiles::rowsOf(const Folder& folder) const {
    std::vector<Row> rows;
    const LaunchItems& results = model_.displayedItems();
    const QString first = model_.isSearching() && !results.empty() ? results.front().id() : QString();
    const QPointF corner = model_.metrics().tileRect({0, 0}).topLeft() * metrics_.scale;
    for (int i = 0; i < static_cast<int>(folder.apps.size()); ++i) {
        const LaunchItem item = LaunchItem::app(folder.apps[i]);
        const QString id = item.id();
        const QPointF place = snapped(metrics_.cellCenter(i) + corner, devicePixelRatio());
        rows.push_back({.id = id,
                        .item = item,
                        .name = model_.name(item),
                        .place = place,
                        .pressed = id == model_.pressedID(),
                        .mergeTarget = id == model_.mergeTargetID(),
                        .highlighted = id == first,
                        .dragged = model_.drag() && id == model_.drag()->id});
    }
    return rows;
}

} // namespace amberquill
