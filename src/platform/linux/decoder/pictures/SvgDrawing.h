#pragma once

#include <QByteArray>
#include <QImage>
#include <optional>

// SVG icons.
namespace amberquill::desktop {

// The content of a gzip file. None: broken, or more than `limit` bytes.
[[nodiscard]] std::optional<QByteArray> gunzipped(const QByteArray& bytes, qsizetype limit);

// Whether an SVG document, in any of the Unicode encodings, has an element for text. Also true if the element
// is in a comment, or not drawn.
[[nodiscard]] bool mayHoldText(const QByteArray& document);

// Draws an SVG document into a square of `edge` pixels, its proportions kept, centred, transparent around.
// The drawing begins on a whole pixel, so that shapes aligned to the pixel grid stay sharp. Files that the
// document refers to are not opened. Null: the renderer cannot read it, or no pixel is visible.
[[nodiscard]] QImage drawnSvg(const QByteArray& document, int edge);

} // namespace amberquill::desktop
