#pragma once

#include "views/BackgroundShade.h"

#include <QImage>
#include <QSize>
#include <vector>

namespace amberquill {

// The colour wash over a blurred backdrop. Neither has detail, so both are put together at the corners of a
// coarse grid, and a pixel lies on straight lines between these.
class BackgroundGrid {
public:
    // For a picture of this size; the backdrop, of any size, fills it.
    BackgroundGrid(const BackgroundShade& shade, const QSize& pixels, const QImage& backdrop);

    // Fills an image of that size in Format_RGB32, dithered.
    void paint(QImage& image) const;

private:
    // A row of the grid, or what lies between two: its red components, then the green, then the blue ones,
    // 0 … 255.
    using Row = std::vector<float>;

    [[nodiscard]] Row row(const BackgroundShade& shade, const QSize& pixels, const QImage& backdrop,
                          int index) const;

    int columns_;
    std::vector<Row> rows_;
};

} // namespace amberquill
