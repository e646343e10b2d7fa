#pragma once

#include <QImage>
#include <QRect>
#include <vector>

namespace amberquill {

// Paints over parts of an image (Format_RGB32) as if they were not there: each pixel becomes a mean of the
// nearest ones outside of the part to the left and right and above and below, the nearer the heavier. Parts
// that touch count as one; one that covers the whole image is left as it is.
void fillFromAround(QImage& image, std::vector<QRect> parts);

} // namespace amberquill
