#pragma once

#include <QImage>

namespace amberquill {

// What is drawn for an application where there is no icon at all: a window on an opaque tile, so that it is
// neither taken for an empty folder nor for an icon that is still to come. Of exactly `edge` × `edge` device
// pixels, premultiplied ARGB; its straight edges lie between pixels.
[[nodiscard]] QImage paintedIconGlyph(int edge);

} // namespace amberquill
