#pragma once

#include "model/PageTurns.h"

class QWheelEvent;

namespace amberquill {

// Qt's wheel event as the model's: a notch of a wheel is 1, a touchpad's movement is in points and has
// phases.
ScrollEvent scrollEvent(const QWheelEvent& event);

} // namespace amberquill
