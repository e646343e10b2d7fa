#pragma once

#include <QByteArray>
#include <QImage>

namespace amberquill::desktop {

// The largest file that is read as an icon.
inline constexpr qsizetype maximumIconBytes = qsizetype{8} * 1024 * 1024;

// The largest picture that is made of one, in pixels each way.
inline constexpr int maximumIconEdge = 4096;

// Makes a picture of exactly `edge` × `edge` device pixels of an icon file's bytes: premultiplied ARGB,
// device pixel ratio 1, proportions kept, centred. The format is what the bytes say, not what the file is
// called: PNG, SVG (also compressed), ICNS, JPEG, WebP, TIFF, XPM, ICO. A file that has the icon in several
// sizes gives the one that suits best. Null: broken, not an icon, or over one of the bounds. Any thread; an
// SVG with text in it needs the application object.
[[nodiscard]] QImage decodedIcon(const QByteArray& bytes, int edge);

} // namespace amberquill::desktop
