#pragma once

#include <QPainterPath>
#include <QRectF>

namespace amberquill {

// A rounded rectangle with continuous corners: each corner is a quarter of a superellipse. It starts earlier
// than an arc of this radius, so that the curvature begins softly, and cuts the same length off the tip. On
// short sides the corner is closer to an arc; the ends of a capsule are half circles.
QPainterPath continuousRoundedRect(const QRectF& rect, double radius);

} // namespace amberquill
