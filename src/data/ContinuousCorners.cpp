#include "data/ContinuousCorners.h"

#include <QPolygonF>
#include <algorithm>
#include <array>
#include <cmath>
#include <numbers>

namespace amberquill {

namespace {

// A corner's length along a side, in radii.
constexpr double reach = 1.5;

constexpr int stepsPerCorner = 24;

// The distance from the middle of an arc of radius 1 to the tip of the corner, along one side.
const double arcCut = 1 - std::numbers::sqrt2 / 2;

struct Corner {
    double extent;   // along each side
    double exponent; // of the superellipse
};

Corner cornerFor(const QRectF& rect, double radius) {
    const double extent = std::min({radius * reach, rect.width() / 2, rect.height() / 2});
    const double cut = std::min(radius, extent) * arcCut;
    return {extent, -std::numbers::ln2 / std::log(1 - cut / extent)};
}

} // namespace

QPainterPath continuousRoundedRect(const QRectF& rect, double radius) {
    QPainterPath path;
    if (radius <= 0 || rect.isEmpty()) {
        path.addRect(rect);
        return path;
    }
    const Corner corner = cornerFor(rect, radius);
    struct Quarter {
        QPointF center;
        double startAngle = 0;
    };
    const double left = rect.left() + corner.extent;
    const double right = rect.right() - corner.extent;
    const double top = rect.top() + corner.extent;
    const double bottom = rect.bottom() - corner.extent;
    const std::array<Quarter, 4> quarters = {{{{right, bottom}, 0},
                                              {{left, bottom}, std::numbers::pi / 2},
                                              {{left, top}, std::numbers::pi},
                                              {{right, top}, std::numbers::pi * 1.5}}};
    QPolygonF outline;
    outline.reserve(quarters.size() * (stepsPerCorner + 1) + 1);
    for (const Quarter& quarter : quarters) {
        for (int step = 0; step <= stepsPerCorner; ++step) {
            const double angle = quarter.startAngle + step * std::numbers::pi / 2 / stepsPerCorner;
            const double x = std::cos(angle);
            const double y = std::sin(angle);
            const double power = 2 / corner.exponent;
            outline.append(quarter.center + QPointF(std::copysign(std::pow(std::abs(x), power), x),
                                                    std::copysign(std::pow(std::abs(y), power), y)) *
                                                corner.extent);
        }
    }
    path.addPolygon(outline);
    path.closeSubpath();
    return path;
}

} // namespace amberquill
