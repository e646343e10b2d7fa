#pragma once

#include <QImage>
#include <QSize>

namespace amberquill::desktop {

// The largest size with the proportions of `size` that fits into a square of `edge` pixels; at least one
// pixel each way. `size` is not empty.
[[nodiscard]] QSize fittedSize(QSize size, int edge);

// The picture scaled to fit a square of `edge` pixels and centred in it, transparent around: premultiplied
// ARGB, device pixel ratio 1, in sRGB. Scales by a cubic filter over all source pixels that a target pixel
// covers, so that fine lines do not vanish. Null for a null picture.
[[nodiscard]] QImage fittedImage(const QImage& image, int edge);

} // namespace amberquill::desktop
