#pragma once

#include "data/GridMetrics.h"

#include <QPointF>
#include <QRectF>
#include <QSizeF>
#include <optional>

namespace amberquill {

// The geometry of an open folder's panel, in the coordinates of GridMetrics.
struct FolderMetrics {
    int columns = 1;
    int rows = 1;            // at least 1
    QSizeF cellSize;         // of one cell inside the panel
    QRectF panelRect;        // its centre is 10 points below the content's
    GridMetrics grid;        // the page it was made for
    double titleHeight = 70; // the band above the first row
    double padding = 28;     // between the panel's sides and its cells
    double scale = 1;        // of the page's cell, 0.3 … 1

    // The panel of a folder of `count` applications: the largest scale, and of that the fewest columns.
    static FolderMetrics of(int count, const GridMetrics& grid);

    [[nodiscard]] QRectF cellArea() const;
    [[nodiscard]] QPointF cellCenter(int index) const;

    // The slot at a point. Slots reach 12 points above and below the cells. It may be beyond the last
    // application.
    [[nodiscard]] std::optional<int> slotAt(const QPointF& point) const;
};

} // namespace amberquill
