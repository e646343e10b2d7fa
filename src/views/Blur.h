#pragma once

#include <QImage>

namespace amberquill {

// Blurs a Format_Alpha8 image in place as a Gaussian of this standard deviation (in pixels) does, by three
// box blurs. What would come from beyond the edges is transparent.
void blurAlpha(QImage& image, double sigma);

// The same for the colours of a Format_RGBA64_Premultiplied or Format_RGBX64 image: gentle slopes need more
// levels than eight bits have, or they become stairs. Beyond its edges it goes on as at them.
void blurColours(QImage& image, double sigma);

} // namespace amberquill
