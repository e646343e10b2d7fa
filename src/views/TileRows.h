#pragma once

#include "data/GridMetrics.h"
#include "data/LaunchItem.h"
#include "views/RowChanges.h"

#include <QAbstractListModel>
#include <QPointF>
#include <QRectF>
#include <QSizeF>
#include <QtQml/qqmlregistration.h>
#include <vector>

namespace amberquill {

// Where the parts of a tile stand: the rectangles of GridMetrics moved to the nearest device pixels, so that
// icons and labels are sharp at rest. In points from the tile's top left corner.
struct TileLayout {
    Q_GADGET
    QML_ANONYMOUS
    Q_PROPERTY(QSizeF size MEMBER size)
    Q_PROPERTY(QRectF icon MEMBER icon)
    Q_PROPERTY(QRectF label MEMBER label)
    Q_PROPERTY(double fontSize MEMBER fontSize)

public:
    QSizeF size;
    QRectF icon;
    QRectF label; // as wide as the cell less 8, centred below the icon; it may be wider than the tile
    double fontSize = 0;

    bool operator==(const TileLayout&) const = default;

    // `scale`: below 1 for the smaller tiles of a crowded folder.
    static TileLayout of(const GridMetrics& metrics, double devicePixelRatio, double scale = 1);
};

// The nearest device pixel. The views in QML use PixelGrid.qml.
QPointF snapped(const QPointF& point, double devicePixelRatio);
double snapped(double value, double devicePixelRatio);

// A list of tiles to draw, keyed by the identities of their items: a tile keeps its delegate, and so its
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
        MergeTargetRole, // a drop would go into it
        HighlightedRole, // Return opens it
        DraggedRole,     // the floating icon is drawn instead of it
    };

    using QAbstractListModel::QAbstractListModel;

    [[nodiscard]] int rowCount(const QModelIndex& parent = {}) const override;
    [[nodiscard]] QVariant data(const QModelIndex& index, int role) const override;
    [[nodiscard]] QHash<int, QByteArray> roleNames() const override;

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

    // Lays everything out anew, after the size or the device pixel ratio has changed.
    virtual void relayout() = 0;

    void setLayout(const TileLayout& layout);
    [[nodiscard]] const std::vector<Row>& rows() const { return rows_; }
    // Inserts, moves, removes and changes rows until they are these.
    void setRows(std::vector<Row> wanted);

private:
    void apply(const RowChange& change, const std::vector<Row>& wanted);

    std::vector<Row> rows_;
    TileLayout layout_;
    double devicePixelRatio_ = 1;
};

} // namespace amberquill
