#include "views/TileModel.h"

#include "motion/Timeline.h"

#include <QHash>
#include <QSet>
#include <algorithm>

namespace amberquill {

namespace {

// Which of these positions form the longest ascending run (not necessarily adjacent): those can stay where
// they are while the others move around them.
std::vector<bool> longestAscendingRun(const std::vector<int>& positions) {
    const std::size_t count = positions.size();
    std::vector<std::size_t> length(count, 1);
    std::vector<std::size_t> previous(count, count);
    std::size_t best = count;
    for (std::size_t i = 0; i < count; ++i) {
        for (std::size_t j = 0; j < i; ++j) {
            if (positions[j] < positions[i] && length[j] + 1 > length[i]) {
                length[i] = length[j] + 1;
                previous[i] = j;
            }
        }
        if (best == count || length[i] > length[best]) {
            best = i;
        }
    }
    std::vector<bool> stays(count, false);
    for (; best < count; best = previous[best]) {
        stays[best] = true;
    }
    return stays;
}

} // namespace

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
    removeAllBut(wanted);
    arrange(wanted);
    for (std::size_t i = 0; i < wanted.size(); ++i) {
        if (rows_[i] != wanted[i]) {
            rows_[i] = std::move(wanted[i]);
            const QModelIndex changed = index(static_cast<int>(i));
            Q_EMIT dataChanged(changed, changed);
        }
    }
}

void TileModel::removeAllBut(const std::vector<Row>& wanted) {
    QSet<QString> kept;
    kept.reserve(static_cast<qsizetype>(wanted.size()));
    for (const Row& row : wanted) {
        kept.insert(row.id);
    }
    auto last = static_cast<int>(rows_.size()) - 1;
    while (last >= 0) {
        if (kept.contains(rows_[static_cast<std::size_t>(last)].id)) {
            --last;
            continue;
        }
        int first = last;
        while (first > 0 && !kept.contains(rows_[static_cast<std::size_t>(first - 1)].id)) {
            --first;
        }
        beginRemoveRows({}, first, last);
        rows_.erase(rows_.begin() + first, rows_.begin() + last + 1);
        endRemoveRows();
        last = first - 1;
    }
}

// Moves and inserts rows until they are in the wanted order, each at most once.
void TileModel::arrange(const std::vector<Row>& wanted) {
    QHash<QString, int> places;
    for (std::size_t i = 0; i < wanted.size(); ++i) {
        places.insert(wanted[i].id, static_cast<int>(i));
    }
    std::vector<int> positions;
    QHash<QString, bool> stays;
    for (const Row& row : rows_) {
        positions.push_back(places.value(row.id));
    }
    const std::vector<bool> run = longestAscendingRun(positions);
    for (std::size_t i = 0; i < rows_.size(); ++i) {
        stays.insert(rows_[i].id, run[i]);
    }
    const auto rowOf = [this](const QString& id) {
        const auto row =
            std::find_if(rows_.begin(), rows_.end(), [&id](const Row& each) { return each.id == id; });
        return static_cast<int>(row - rows_.begin());
    };
    int next = 0; // where the next wanted row belongs: behind the one before it
    for (std::size_t i = 0; i < wanted.size(); ++i) {
        const QString& id = wanted[i].id;
        const auto known = stays.constFind(id);
        if (known == stays.constEnd()) {
            std::size_t end = i + 1;
            while (end < wanted.size() && !stays.contains(wanted[end].id)) {
                ++end;
            }
            const auto count = static_cast<int>(end - i);
            beginInsertRows({}, next, next + count - 1);
            rows_.insert(rows_.begin() + next, wanted.begin() + static_cast<std::ptrdiff_t>(i),
                         wanted.begin() + static_cast<std::ptrdiff_t>(end));
            endInsertRows();
            next += count;
            i = end - 1;
            continue;
        }
        const int from = rowOf(id);
        if (*known) {
            next = from + 1;
            continue;
        }
        if (from != next && from + 1 != next) {
            beginMoveRows({}, from, from, {}, next);
            Row row = std::move(rows_[static_cast<std::size_t>(from)]);
            rows_.erase(rows_.begin() + from);
            rows_.insert(rows_.begin() + (from < next ? next - 1 : next), std::move(row));
            endMoveRows();
        }
        next = from < next ? next : next + 1;
    }
}

} // namespace amberquill
