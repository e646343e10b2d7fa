#include "data/GridMetrics.h"

#include <algorithm>
#include <cmath>

namespace amberquill {

namespace {

constexpr double topBand = 120;
constexpr double bottomBand = 72;
constexpr double smallestMargin = 70;
constexpr double marginShare = 0.08;
constexpr double labelGap = 8; // between icon and label

} // namespace

QRectF GridMetrics::gridRect() const {
    const double margin = std::max(size.width() * marginShare, smallestMargin);
    return {margin, topBand, std::max(size.width() - 2 * margin, 1.0),
            std::max(size.height() - topBand - bottomBand, 1.0)};
}

QSizeF GridMetrics::cellSize() const {
    const QRectF grid = gridRect();
    return {grid.width() / columns, grid.height() / rows};
}

QPointF GridMetrics::cellCenter(int slot) const {
    const QRectF grid = gridRect();
    const QSizeF cell = cellSize();
    const int row = slot / columns;
    const int column = slot - row * columns;
    return {grid.left() + cell.width() * (column + 0.5), grid.top() + cell.height() * (row + 0.5)};
}

std::optional<int> GridMetrics::slotAt(const QPointF& point) const {
    const QRectF grid = gridRect();
    if (!holds(grid, point)) {
        return std::nullopt;
    }
    const QSizeF cell = cellSize();
    const int column = std::min(columns - 1, static_cast<int>((point.x() - grid.left()) / cell.width()));
    const int row = std::min(rows - 1, static_cast<int>((point.y() - grid.top()) / cell.height()));
    return row * columns + column;
}

double GridMetrics::labelFontSize() const {
    return std::clamp(cellSize().height() * 0.075, 11.0, 14.0);
}

double GridMetrics::labelHeight() const {
    return std::ceil(labelFontSize() * 1.4);
}

double GridMetrics::rawIconSize() const {
    const QSizeF cell = cellSize();
    return std::min((cell.height() - labelHeight() - labelGap) * 0.8, cell.width() * 0.62);
}

double GridMetrics::iconSize() const {
    return std::clamp(rawIconSize(), 36.0, 128.0);
}

QRectF GridMetrics::tileRect(const QPointF& center) const {
    const double icon = iconSize();
    const double width = std::min(icon + 28, cellSize().width());
    const double height = labelHeight() + icon + labelGap;
    return {center.x() - width / 2, center.y() - height / 2, width, height};
}

double GridMetrics::iconRise() const {
    return (labelHeight() + labelGap) / 2;
}

} // namespace amberquill
