#pragma once

#include "platform/ScreenCapture.h"

#include <QImage>
#include <QRgb>
#include <QSize>
#include <cstdint>
#include <vector>

namespace amberquill::desktop {

// Scales an image down while its rows arrive, so that the large image never exists.
class RowShrinker {
public:
    static constexpr int most = 256;

    // For an image of `size`. Each result pixel is the mean of `shrink` × `shrink` pixels, fewer at the right
    // and bottom edges. 1 ≤ shrink ≤ most.
    RowShrinker(const QSize& size, int shrink);

    // Adds the next row, from the top. The highest byte of each pixel is ignored.
    void add(const QRgb* row);

    // The opaque result in Format_RGB32. Null: rows are missing, or there was not enough memory.
    [[nodiscard]] QImage image() const;

    // The result so far. Rows below the finished ones are undefined.
    [[nodiscard]] const QImage& begun() const { return image_; }
    [[nodiscard]] int finishedRows() const {
        return rows_ == size_.height() ? image_.height() : rows_ / shrink_;
    }

private:
    void finishRow();

    QSize size_;
    int shrink_;
    int rows_ = 0;
    QImage image_;
    std::vector<std::uint16_t> sums_; // of one block's rows, for each byte of a result pixel
};

// Assembles the picture of a screen from its rows.
class ScreenRows {
public:
    // 1 ≤ shrink ≤ RowShrinker::most.
    ScreenRows(const QSize& size, int shrink, bool alsoWhole);

    // Adds the next row, from the top. The highest byte of each pixel is ignored.
    void add(const QRgb* row);

    [[nodiscard]] bool isComplete() const { return !shrinker_.image().isNull(); }

    // Null images: rows are missing, or there was not enough memory.
    [[nodiscard]] ScreenPicture picture() const;

    // The picture of the rows so far. Missing rows are filled from `other`, an earlier picture of the same
    // screen in any size, or, if that is null, with the mean colour of the rows so far. Null images: neither
    // exists.
    [[nodiscard]] ScreenPicture pictureOver(const QImage& other) const;

private:
    RowShrinker shrinker_;
    QImage whole_;
    int rows_ = 0;
};

} // namespace amberquill::desktop
