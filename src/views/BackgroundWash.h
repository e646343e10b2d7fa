#pragma once

#include "data/BackgroundTheme.h"

#include <QImage>
#include <QSize>

namespace amberquill {

// The colour wash that lies over the backdrop (BackgroundShade). Premultiplied, dithered so that the dark end
// shows no bands. Pure; safe on any thread.
QImage backgroundWash(BackgroundTheme theme, const QSize& pixels, double devicePixelRatio);

// The same over an opaque backdrop that fills the picture, however small it is, or over black where there is
// none. A small backdrop is taken for a blurred one: it is made larger smoothly.
QImage opaqueBackground(BackgroundTheme theme, const QSize& pixels, double devicePixelRatio,
                        const QImage& backdrop);

} // namespace amberquill
