#include "views/TileLayout.h"

#include <cmath>

namespace amberquill {

namespace {

constexpr double labelInset = 8; // by which the label is narrower than its cell
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

} // namespace amberquill
