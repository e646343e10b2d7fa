#include "model/DragTracker.h"

namespace amberquill {

void DragTracker::setLocation(const QPointF& location) {
    if (location != location_) {
        location_ = location;
        Q_EMIT locationChanged();
    }
}

} // namespace amberquill
