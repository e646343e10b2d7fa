#pragma once

#include <QImage>

// Icons that the launcher paints itself: `edge` × `edge` device pixels, premultiplied ARGB.
namespace amberquill {

// For a place whose icon is being decoded: a pale, translucent tile.
[[nodiscard]] QImage paintedPlaceholder(int edge);

// For an application without an icon: a window on an opaque tile, which looks neither like an empty folder
// nor like the placeholder. Its straight edges lie between pixels.
[[nodiscard]] QImage paintedGenericIcon(int edge);

} // namespace amberquill
