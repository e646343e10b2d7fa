#pragma once

#include "data/GridMetrics.h"

#include <QObject>
#include <QPointF>
#include <QRectF>
#include <QSizeF>
#include <QtQml/qqmlregistration.h>

namespace amberquill {

// Where the parts of a tile stand inside it: the rectangles of GridMetrics moved to the nearest device
// pixels, so that icons and labels are sharp at rest. Points, from the tile's top left corner.
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

    // `scale`: by which everything is smaller than on the page, for the tiles of a crowded folder.
    static TileLayout of(const GridMetrics& metrics, double devicePixelRatio, double scale = 1);
};

// The device pixel corner nearest to a point.
QPointF snapped(const QPointF& point, double devicePixelRatio);
double snapped(double value, double devicePixelRatio);

} // namespace amberquill
