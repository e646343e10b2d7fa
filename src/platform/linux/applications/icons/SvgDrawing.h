#pragma once

#include <QByteArray>
#include <QByteArrayView>
#include <QImage>
#include <optional>

namespace amberquill::desktop {

// Draws an SVG document into a square of `edge` pixels, its proportions kept, centred. Null: the inspection
// found fault with it, the renderer cannot read it, or nothing of it shows.
[[nodiscard]] QImage drawnSvg(const QByteArray& text, int edge);

// Uncompresses a gzip file. None: broken, or more than `limit` bytes.
[[nodiscard]] std::optional<QByteArray> uncompressed(QByteArrayView file, qsizetype limit);

} // namespace amberquill::desktop
