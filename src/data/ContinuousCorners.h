#pragma once

#include <QPainterPath>
#include <QRectF>

namespace amberquill {

// A rounded rectangle with continuous corners: each corner is a quarter of a superellipse that starts further
// out than a circle's arc of this radius and cuts the same amount off the corner's tip, so that the curvature
// sets in softly. Where the sides leave no room for that, the corner comes closer to an arc; a capsule's ends
// are half circles.
QPainterPath continuousRoundedRect(const QRectF& rect, double radius);

} // namespace amberquill
