#pragma once

#include "data/BackgroundTheme.h"

#include <QImage>
#include <QSize>

namespace amberquill {

// The translucent colours of a theme that lie over the backdrop. Premultiplied; dithered, so that the dark
// end shows no bands. Pure; safe on any thread.
QImage backgroundWash(BackgroundTheme theme, const QSize& pixels, double devicePixelRatio);

// The same over an opaque backdrop, which is scaled up smoothly to fill the picture, or over black if the
// backdrop is null. The backdrop has no detail: it is blurred.
QImage opaqueBackground(BackgroundTheme theme, const QSize& pixels, double devicePixelRatio,
                        const QImage& backdrop);

} // namespace amberquill
