#pragma once

#include <QByteArray>
#include <QImage>

namespace amberquill::desktop {

// Whether fonts can be read, which takes the file system: what is text in a drawing is drawn with them.
enum class Fonts { Absent, Present };

struct DecodedIcon {
    QImage image;            // null: broken, not an icon, over one of the bounds, or
    bool needsFonts = false; // may be a drawing with text, and fonts are absent
};

// Makes a picture of exactly `edge` × `edge` device pixels of an icon file's bytes: premultiplied ARGB,
// device pixel ratio 1, proportions kept, centred. The format is what the bytes say, not what the file is
// called: PNG, SVG (also compressed), ICNS, JPEG, WebP, TIFF, XPM, ICO. A file that has the icon in several
// sizes gives the one that suits best, an animation its first picture. No other file is opened but fonts.
//
// The bytes may be chosen such that this takes any time and any memory, or ends the process. Any thread.
[[nodiscard]] DecodedIcon decodedIcon(const QByteArray& bytes, int edge, Fonts fonts);

} // namespace amberquill::desktop
