#include "views/TileModel.h"

#include "motion/Timeline.h"

#include <algorithm>

namespace amberquill {

TileModel::TileModel(LauncherModel& model, QObject* parent)
    : QAbstractListModel(parent)
    , model_(model) {
    connect(&model, &LauncherModel::itemsChanged, this, &TileModel::refresh);
    connect(&model, &LauncherModel::namesChanged, this, &TileModel::refresh);
    connect(&model, &LauncherModel::pageChanged, this, &TileModel::refresh);
    connect(&model, &LauncherModel::pressedIDChanged, this, &TileModel::refresh);
    connect(&model, &LauncherModel::presentedChanged, this, &TileModel::settleWhenAtRest);
    connect(&model, &LauncherModel::sizeChanged, this, &TileModel::relayout);
    connect(&model, &LauncherModel::gridChanged, this, &TileModel::relayout);
    connect(&Timeline::shared(), &Timeline::stopped, this, &TileModel::settleWhenAtRest);
    relayout();
}

int TileModel::rowCount(const QModelIndex& parent) const {
    return parent.isValid() ? 0 : static_cast<int>(rows_.size());
}

QVariant TileModel::data(const QModelIndex& index, int role) const {
    if (!checkIndex(index, CheckIndexOption::IndexIsValid | CheckIndexOption::ParentIsInvalid)) {
        return {};
    }
    const Row& row = rows_[static_cast<std::size_t>(index.row())];
    switch (role) {
    case ItemIdRole:
        return row.id;
    case Qt::DisplayRole:
    case NameRole:
        return row.name;
    case PathRole:
        return row.item.isFolder() ? QString() : *row.item.asApp();
    case AppPathsRole:
        return row.item.isFolder() ? row.item.asFolder()->apps : QStringList();
    case IsFolderRole:
        return row.item.isFolder();
    case PlaceRole:
        return row.place;
    case PressedRole:
        return row.pressed;
    default:
        return {};
    }
}

QHash<int, QByteArray> TileModel::roleNames() const {
    return {{ItemIdRole, "itemId"},     {NameRole, "name"},         {PathRole, "path"},
            {AppPathsRole, "appPaths"}, {IsFolderRole, "isFolder"}, {PlaceRole, "place"},
            {PressedRole, "pressed"}};
}

void TileModel::setDevicePixelRatio(double ratio) {
    if (ratio > 0 && ratio != devicePixelRatio_) {
        devicePixelRatio_ = ratio;
        relayout();
    }
}

void TileModel::relayout() {
    layout_ = TileLayout::of(model_.metrics(), devicePixelRatio_);
    Q_EMIT layoutChanged();
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
            QString id = item.id();
            const bool pressed = id == model_.pressedID();
            rows.push_back(
                {std::move(id), item, model_.name(item), snapped(corner, devicePixelRatio_), pressed});
        }
    }
    return rows;
}

void TileModel::become(std::vector<Row> wanted) {
    const auto ids = [](const std::vector<Row>& rows) {
        QStringList result;
        result.reserve(static_cast<qsizetype>(rows.size()));
        for (const Row& row : rows) {
            result.append(row.id);
        }
        return result;
    };
    for (const RowChange& change : rowChanges(ids(rows_), ids(wanted))) {
        apply(change, wanted);
    }
    for (std::size_t i = 0; i < wanted.size(); ++i) {
        if (rows_[i] != wanted[i]) {
            rows_[i] = std::move(wanted[i]);
            const QModelIndex changed = index(static_cast<int>(i));
            Q_EMIT dataChanged(changed, changed);
        }
    }
}

void TileModel::apply(const RowChange& change, const std::vector<Row>& wanted) {
    const auto first = rows_.begin() + change.first;
    switch (change.kind) {
    case RowChange::Kind::Remove:
        beginRemoveRows({}, change.first, change.first + change.count - 1);
        rows_.erase(first, first + change.count);
        endRemoveRows();
        break;
    case RowChange::Kind::Insert: {
        beginInsertRows({}, change.first, change.first + change.count - 1);
        const auto source = wanted.begin() + change.to;
        rows_.insert(first, source, source + change.count);
        endInsertRows();
        break;
    }
    case RowChange::Kind::Move: {
        beginMoveRows({}, change.first, change.first, {}, change.to);
        Row row = std::move(*first);
        rows_.erase(first);
        rows_.insert(rows_.begin() + (change.first < change.to ? change.to - 1 : change.to), std::move(row));
        endMoveRows();
        break;
    }
    }
}

} // namespace amberquill
