#include "views/TileRows.h"

#include "localization/TranslatedTexts.h"

#include <QSet>
#include <cmath>

namespace amberquill {

namespace {

constexpr double labelInset = 8; // the label is narrower than its cell by this
constexpr double labelGap = 8;   // between icon and label

} // namespace

double snapped(double value, double devicePixelRatio) {
    return std::round(value * devicePixelRatio) / devicePixelRatio;
}

QPointF snapped(const QPointF& point, double devicePixelRatio) {
    return {snapped(point.x(), devicePixelRatio), snapped(point.y(), devicePixelRatio)};
}

TileLayout TileLayout::of(const GridMetrics& metrics, double devicePixelRatio, double scale) {
    const auto snap = [=](double value) { return snapped(value * scale, devicePixelRatio); };
    const QRectF tile = metrics.tileRect({0, 0});
    TileLayout layout;
    layout.size = {snap(tile.width()), snap(tile.height())};
    const double edge = snap(metrics.iconSize());
    layout.icon = {snapped((layout.size.width() - edge) / 2, devicePixelRatio), 0, edge, edge};
    const double labelWidth = snap(metrics.cellSize().width() - labelInset);
    layout.label = {snapped((layout.size.width() - labelWidth) / 2, devicePixelRatio),
                    snap(metrics.iconSize() + labelGap), labelWidth, metrics.labelHeight() * scale};
    layout.fontSize = metrics.labelFontSize() * scale;
    return layout;
}

int TileRows::rowCount(const QModelIndex& parent) const {
    return parent.isValid() ? 0 : static_cast<int>(rows_.size());
}

QVariant TileRows::data(const QModelIndex& index, int role) const {
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
    case SpokenNameRole:
        return row.item.isFolder() ? spokenFolder(row.name, row.item.asFolder()->apps.size()) : row.name;
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
    case MergeTargetRole:
        return row.mergeTarget;
    case HighlightedRole:
        return row.highlighted;
    case DraggedRole:
        return row.dragged;
    default:
        return {};
    }
}

QHash<int, QByteArray> TileRows::roleNames() const {
    return {{ItemIdRole, "itemId"},
            {NameRole, "name"},
            {SpokenNameRole, "spokenName"},
            {PathRole, "path"},
            {AppPathsRole, "appPaths"},
            {IsFolderRole, "isFolder"},
            {PlaceRole, "place"},
            {PressedRole, "pressed"},
            {MergeTargetRole, "mergeTarget"},
            {HighlightedRole, "highlighted"},
            {DraggedRole, "dragged"}};
}

void TileRows::setDevicePixelRatio(double ratio) {
    if (ratio > 0 && ratio != devicePixelRatio_) {
        devicePixelRatio_ = ratio;
        relayout();
    }
}

void TileRows::setLayout(const TileLayout& layout) {
    layout_ = layout;
    Q_EMIT layoutChanged();
}

void TileRows::setRows(std::vector<Row> wanted) {
    // An imported layout may contain an identity twice. It is drawn once.
    QSet<QString> seen;
    std::erase_if(wanted, [&seen](const Row& row) {
        const qsizetype before = seen.size();
        seen.insert(row.id);
        return seen.size() == before;
    });
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

void TileRows::apply(const RowChange& change, const std::vector<Row>& wanted) {
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
