#pragma once

#include "data/BackgroundTheme.h"

#include <QImage>
#include <QSize>

namespace amberquill {

// The colour wash that lies over the backdrop: the theme's gradient from the top left corner to the bottom
// right one at an opacity of 0.58, and over it a glow of white at 0.12 from the middle of the top edge to
// nothing 900 points away. Premultiplied, dithered so that the dark end shows no bands. Pure; safe on any
// thread.
QImage backgroundWash(BackgroundTheme theme, const QSize& pixels, double devicePixelRatio);

// The same over an opaque backdrop that fills the picture, however small it is, or over black where there is
// none.
QImage opaqueBackground(BackgroundTheme theme, const QSize& pixels, double devicePixelRatio,
                        const QImage& backdrop);

} // namespace amberquill
