#pragma once

#include <QPointF>
#include <QRectF>
#include <QSizeF>
#include <optional>

namespace amberquill {

// Unlike QRectF::contains, includes the left and top edges and excludes the right and bottom ones.
[[nodiscard]] inline bool holds(const QRectF& rect, const QPointF& point) {
    return point.x() >= rect.left() && point.x() < rect.left() + rect.width() && point.y() >= rect.top() &&
           point.y() < rect.top() + rect.height();
}

// The geometry of a page of icons, for drawing and hit testing. In points of the launcher's content: the
// origin is its top left, y grows downward.
struct GridMetrics {
    QSizeF size;     // of the content
    int columns = 1; // at least 1
    int rows = 1;    // at least 1

    bool operator==(const GridMetrics&) const = default;

    // The area of the cells, at least 1 × 1. Its margins: 120 at the top (search field), 72 at the bottom
    // (page dots), on either side the larger of 70 and 8 % of the width.
    [[nodiscard]] QRectF gridRect() const;

    [[nodiscard]] QSizeF cellSize() const;

    // Slots count row by row from 0. A slot beyond the last is below the grid.
    [[nodiscard]] QPointF cellCenter(int slot) const;

    [[nodiscard]] std::optional<int> slotAt(const QPointF& point) const;

    [[nodiscard]] int slotsPerPage() const { return columns * rows; }

    [[nodiscard]] double labelFontSize() const;
    [[nodiscard]] double labelHeight() const;

    // The edge of the icon before the limits of 36 and 128.
    [[nodiscard]] double rawIconSize() const;
    [[nodiscard]] double iconSize() const;

    // The tile (icon above label) around the centre of its cell.
    [[nodiscard]] QRectF tileRect(const QPointF& center) const;

    // The distance of the icon's centre above the cell's.
    [[nodiscard]] double iconRise() const;
};

} // namespace amberquill
