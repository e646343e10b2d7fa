#pragma once

#include <QImage>
#include <QSize>

namespace amberquill {

// A Format_RGBA64_Premultiplied image without detail, which is not empty, made larger smoothly to this size,
// as a Format_ARGB32_Premultiplied one. Dithered, so that slow changes of colour show no bands. Pure.
[[nodiscard]] QImage enlarged(const QImage& image, const QSize& pixels);

} // namespace amberquill
