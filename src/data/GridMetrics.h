#pragma once

#include <QPointF>
#include <QRectF>
#include <QSizeF>
#include <optional>

namespace amberquill {

// A rectangle here holds its left and top edge and not its right and bottom one, unlike QRectF::contains.
[[nodiscard]] inline bool holds(const QRectF& rect, const QPointF& point) {
    return point.x() >= rect.left() && point.x() < rect.left() + rect.width() && point.y() >= rect.top() &&
           point.y() < rect.top() + rect.height();
}

// The geometry of a page of icons. All values are points in the launcher's content: origin at its top left, y
// downward. Drawing and hit testing both use it, so that they always agree.
struct GridMetrics {
    QSizeF size;     // of the content
    int columns = 1; // at least 1
    int rows = 1;    // at least 1

    bool operator==(const GridMetrics&) const = default;

    // The rectangle that is divided into cells: free are 120 at the top (search field), 72 at the bottom
    // (page dots) and the larger of 70 and 8 % of the width on either side. At least 1 × 1.
    [[nodiscard]] QRectF gridRect() const;

    [[nodiscard]] QSizeF cellSize() const;

    // Slots count row by row from 0. A slot beyond the last cell gives a point below the grid.
    [[nodiscard]] QPointF cellCenter(int slot) const;

    [[nodiscard]] std::optional<int> slotAt(const QPointF& point) const;

    [[nodiscard]] int slotsPerPage() const { return columns * rows; }

    [[nodiscard]] double labelFontSize() const;
    [[nodiscard]] double labelHeight() const;

    // The icon's edge before it is limited to 36 … 128.
    [[nodiscard]] double rawIconSize() const;
    [[nodiscard]] double iconSize() const;

    // What a tile (icon above label) takes up around its cell's centre.
    [[nodiscard]] QRectF tileRect(const QPointF& center) const;

    // How far the icon's centre stands above the cell's.
    [[nodiscard]] double iconRise() const;
};

} // namespace amberquill
