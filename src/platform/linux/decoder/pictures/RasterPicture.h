#pragma once

#include "platform/linux/decoder/pictures/IconFormat.h"

#include <QByteArray>
#include <QImage>
#include <QSize>

namespace amberquill::desktop {

// A picture made of pixels, read by Qt; of several in a file the one that is best shown at `edge` pixels.
// Null: broken, or with more pixels than an icon has; its header says how many, and is asked before anything
// is allocated. For ICNS see IcnsContainer.
[[nodiscard]] QImage decodedRaster(const QByteArray& bytes, IconFormat format, int edge);

// The size that the header states; empty where there is none.
[[nodiscard]] QSize rasterSize(const QByteArray& bytes, IconFormat format);

// Loads what reads these pictures, and has Qt bear as large ones in this process.
void loadRasterReaders();

} // namespace amberquill::desktop
