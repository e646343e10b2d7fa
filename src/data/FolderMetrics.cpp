#include "data/FolderMetrics.h"

#include <algorithm>
#include <cmath>

namespace amberquill {

namespace {

constexpr double titleBand = 70;
constexpr double sideInset = 28;
constexpr double bottomInset = 28;
constexpr double smallestScale = 0.3;
constexpr double tieBreak = 0.001; // more columns must win by more than this
constexpr double slotSlack = 12;

int rowsFor(int count, int columns) {
    return std::max((count + columns - 1) / columns, 1);
}

struct Fit {
    int columns;
    double scale;
};

Fit bestFit(int count, const GridMetrics& grid) {
    const QSizeF cell = grid.cellSize();
    const int first = std::min(std::max(count, 4), grid.columns);
    Fit best{first, 0};
    for (int columns = first; columns <= grid.columns + 6; ++columns) {
        const double across = (grid.size.width() - 120 - 2 * sideInset) / (cell.width() * columns);
        const double down =
            (grid.size.height() - 180 - titleBand - bottomInset) / (cell.height() * rowsFor(count, columns));
        if (across >= 1 && down >= 1) {
            return best.scale + tieBreak < 1 ? Fit{columns, 1} : best;
        }
        const double scale = std::min(across, down);
        if (best.scale + tieBreak < scale) {
            best = {columns, scale};
        }
    }
    return best;
}

} // namespace

FolderMetrics FolderMetrics::of(int count, const GridMetrics& grid) {
    const Fit fit = bestFit(count, grid);
    FolderMetrics metrics;
    metrics.columns = fit.columns;
    metrics.rows = rowsFor(count, fit.columns);
    metrics.scale = std::max(fit.scale, smallestScale);
    metrics.cellSize = grid.cellSize() * metrics.scale;
    metrics.grid = grid;
    metrics.titleHeight = titleBand;
    metrics.padding = sideInset;
    const double width = metrics.cellSize.width() * metrics.columns + 2 * sideInset;
    const double height = metrics.rows * metrics.cellSize.height() + titleBand + bottomInset;
    metrics.panelRect = {(grid.size.width() - width) * 0.5, (grid.size.height() - height) * 0.5 + 10, width,
                         height};
    return metrics;
}

QRectF FolderMetrics::cellArea() const {
    return {panelRect.left() + padding, panelRect.top() + titleHeight, cellSize.width() * columns,
            cellSize.height() * rows};
}

QPointF FolderMetrics::cellCenter(int index) const {
    const QRectF area = cellArea();
    const int row = index / columns;
    const int column = index - row * columns;
    return {area.left() + (column + 0.5) * cellSize.width(), area.top() + (row + 0.5) * cellSize.height()};
}

std::optional<int> FolderMetrics::slotAt(const QPointF& point) const {
    const QRectF area = cellArea();
    if (!holds(area.adjusted(0, -slotSlack, 0, slotSlack), point)) {
        return std::nullopt;
    }
    const int column =
        std::clamp(static_cast<int>((point.x() - area.left()) / cellSize.width()), 0, columns - 1);
    const int row = std::clamp(static_cast<int>((point.y() - area.top()) / cellSize.height()), 0, rows - 1);
    return row * columns + column;
}

} // namespace amberquill
