#pragma once

#include <QImage>

namespace amberquill {

// The image with `amount` (-1 … 1) added to every colour component, its transparency unchanged.
QImage withBrightness(const QImage& image, double amount);

} // namespace amberquill
