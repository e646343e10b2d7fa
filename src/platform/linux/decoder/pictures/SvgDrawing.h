#pragma once

#include <QByteArray>
#include <QImage>

namespace amberquill::desktop {

// Draws an SVG document into a square of `edge` pixels, its proportions kept, centred. Null: the inspection
// found fault with it, the renderer cannot read it, or nothing of it shows.
[[nodiscard]] QImage drawnSvg(const QByteArray& text, int edge);

} // namespace amberquill::desktop
