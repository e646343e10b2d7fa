#pragma once

#include "platform/linux/decoder/pictures/IconFormat.h"

#include <QByteArray>
#include <QImage>
#include <QSize>
#include <cstddef>
#include <vector>

// Icons made of pixels. For ICNS see IcnsContainer.
namespace amberquill::desktop {

// The size of one picture in a file that has several.
struct PictureSize {
    int edge = 0;  // pixels each way
    int depth = 0; // bits per pixel
};

// The indices of the pictures to try for `edge` pixels, the best first, at most three: the next ones are for
// files whose best picture is broken. The exact size is best, then larger ones from the smallest, then
// smaller ones from the largest. Of the same size, the one of more colours.
[[nodiscard]] std::vector<std::size_t> bestPictures(const std::vector<PictureSize>& pictures, int edge);

// Decodes with Qt's readers; of several pictures in a file the best one for `edge` pixels. Null: broken, or
// larger than an icon may be. The header's size is checked before memory is allocated.
[[nodiscard]] QImage decodedRaster(const QByteArray& bytes, IconFormat format, int edge);

// The size that the header states; empty: none.
[[nodiscard]] QSize rasterSize(const QByteArray& bytes, IconFormat format);

// Loads Qt's readers of these formats, and raises Qt's memory limit in this process to the largest icon.
void loadRasterReaders();

} // namespace amberquill::desktop
