#pragma once

#include "data/LaunchItem.h"
#include "model/LauncherModel.h"
#include "views/RowChanges.h"
#include "views/TileLayout.h"

#include <QAbstractListModel>
#include <QPointF>
#include <QtQml/qqmlregistration.h>
#include <vector>

namespace amberquill {

// The tiles to draw, one row each, keyed by their items' identities: a tile keeps its delegate, and with it
// its motion, while the layout changes around it.
//
// Tiles stand on a strip on which page n begins n content widths from its left end; turning a page moves the
// strip. While something moves, the pages that were there stay and only the one turned to is made; once all
// rests, the rows are those of the page shown and its two neighbours.
class TileModel : public QAbstractListModel {
    Q_OBJECT
    QML_ELEMENT
    QML_UNCREATABLE("made by the program")
    Q_PROPERTY(amberquill::TileLayout layout READ layout NOTIFY layoutChanged FINAL)
    Q_PROPERTY(
        double devicePixelRatio READ devicePixelRatio WRITE setDevicePixelRatio NOTIFY layoutChanged FINAL)

public:
    enum Role {
        ItemIdRole = Qt::UserRole,
        NameRole,
        PathRole,     // of an application; empty for a folder
        AppPathsRole, // of a folder's applications
        IsFolderRole,
        PlaceRole, // of the tile's top left corner on the strip, in points
        PressedRole,
    };

    // The model outlives its tiles.
    explicit TileModel(LauncherModel& model, QObject* parent = nullptr);

    [[nodiscard]] int rowCount(const QModelIndex& parent = {}) const override;
    [[nodiscard]] QVariant data(const QModelIndex& index, int role) const override;
    [[nodiscard]] QHash<int, QByteArray> roleNames() const override;

    [[nodiscard]] TileLayout layout() const { return layout_; }
    [[nodiscard]] double devicePixelRatio() const { return devicePixelRatio_; }
    void setDevicePixelRatio(double ratio);

Q_SIGNALS:
    void layoutChanged();

private:
    struct Row {
        QString id;
        LaunchItem item;
        QString name;
        QPointF place;
        bool pressed;

        bool operator==(const Row&) const = default;
    };

    void refresh();
    void settle();
    void settleWhenAtRest();
    void relayout();
    [[nodiscard]] std::vector<int> pagesAtRest() const;
    [[nodiscard]] std::vector<Row> rowsOf(const std::vector<int>& pages) const;
    void become(std::vector<Row> wanted);
    void apply(const RowChange& change, const std::vector<Row>& wanted);

    LauncherModel& model_;
    std::vector<Row> rows_;
    std::vector<int> pages_; // those whose tiles are rows now, ascending
    TileLayout layout_;
    double devicePixelRatio_ = 1;
    bool settlePosted_ = false;
};

} // namespace amberquill
