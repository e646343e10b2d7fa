#pragma once

#include <QByteArray>
#include <QImage>

namespace amberquill::desktop {

// Draws an SVG document into a square of `edge` pixels, its proportions kept, centred, transparent around. It
// begins on a whole pixel, so that what its author put on the pixels' grid stays there. What it refers to
// outside of itself is not opened. Null: the renderer cannot read it, or nothing of it shows.
[[nodiscard]] QImage drawnSvg(const QByteArray& document, int edge);

} // namespace amberquill::desktop
