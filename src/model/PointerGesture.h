#pragma once

#include <QPointF>
#include <cmath>

namespace amberquill {

// One moment of a press, move and release; points in the launcher's content.
struct PointerGesture {
    QPointF startLocation;
    QPointF location;

    // How far the pointer is from where it was pressed.
    [[nodiscard]] double travel() const {
        const QPointF translation = location - startLocation;
        return std::hypot(translation.x(), translation.y());
    }
};

// A gesture that travels no further than this is a tap, in points.
inline constexpr double tapTravel = 6;

} // namespace amberquill
