#pragma once

#include "data/LaunchItem.h"
#include "views/RowChanges.h"
#include "views/TileLayout.h"

#include <QAbstractListModel>
#include <QPointF>
#include <QtQml/qqmlregistration.h>
#include <vector>

namespace amberquill {

// A list of tiles to draw, keyed by their items' identities: a tile keeps its delegate, and with it its
// motion, while the layout changes around it.
class TileRows : public QAbstractListModel {
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
        SpokenNameRole, // for a screen reader
        PathRole,       // of an application; empty for a folder
        AppPathsRole,   // of a folder's applications
        IsFolderRole,
        PlaceRole, // of the tile's top left corner, in points
        PressedRole,
        MergeTargetRole, // what is dragged would be dropped into it
        HighlightedRole, // it is what Return opens
        DraggedRole,     // the floating icon stands in for it
    };

    using QAbstractListModel::QAbstractListModel;

    [[nodiscard]] int rowCount(const QModelIndex& parent = {}) const override;
    [[nodiscard]] QVariant data(const QModelIndex& index, int role) const override;
    [[nodiscard]] QHash<int, QByteArray> roleNames() const override;

    // Where the parts of each tile stand inside it.
    [[nodiscard]] TileLayout layout() const { return layout_; }
    [[nodiscard]] double devicePixelRatio() const { return devicePixelRatio_; }
    void setDevicePixelRatio(double ratio);

Q_SIGNALS:
    void layoutChanged();

protected:
    struct Row {
        QString id;
        LaunchItem item;
        QString name;
        QPointF place;
        bool pressed = false;
        bool mergeTarget = false;
        bool highlighted = false;
        bool dragged = false;

        bool operator==(const Row&) const = default;
    };

    // Everything is to be laid out anew: the size or the resolution has changed.
    virtual void relayout() = 0;

    void setLayout(const TileLayout& layout);
    [[nodiscard]] const std::vector<Row>& rows() const { return rows_; }
    // Inserts, moves, removes and changes rows until they are these.
    void become(std::vector<Row> wanted);

private:
    void apply(const RowChange& change, const std::vector<Row>& wanted);

    std::vector<Row> rows_;
    TileLayout layout_;
    double devicePixelRatio_ = 1;
};

} // namespace amberquill
