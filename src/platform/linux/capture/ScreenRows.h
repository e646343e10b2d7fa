#pragma once

#include "platform/ScreenCapture.h"

#include <QImage>
#include <QRgb>
#include <QSize>
#include <cstdint>
#include <vector>

namespace amberquill::desktop {

// Makes an image smaller while its rows come in, so that the large one never exists.
class RowShrinker {
public:
    static constexpr int most = 256;

    // Each pixel will be the mean of `shrink` × `shrink` of those of an image of this size, which are fewer
    // at the right and bottom edges. 1 ≤ shrink ≤ most.
    RowShrinker(const QSize& size, int shrink);

    // The next row, from the top. What stands in the highest byte of its pixels does not matter.
    void add(const QRgb* row);

    // Once all rows are in: opaque, in Format_RGB32. Null: there are rows missing, or no memory was there.
    [[nodiscard]] QImage image() const;

    // The same with as many rows as are finished; what stands below them is undefined.
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
    std::vector<std::uint16_t> sums_; // of the rows of one block, per byte of a pixel
};

// Puts together the picture of a screen from its rows.
class ScreenRows {
public:
    // 1 ≤ shrink ≤ RowShrinker::most.
    ScreenRows(const QSize& size, int shrink, bool alsoWhole);

    // The next row, from the top. What stands in the highest byte of its pixels does not matter.
    void add(const QRgb* row);

    [[nodiscard]] bool isComplete() const { return !shrinker_.image().isNull(); }

    // Once all rows are in. Null images: there are rows missing, or no memory was there.
    [[nodiscard]] ScreenPicture picture() const;

    // With the rows that are in; those below them are filled from another picture of the same screen, of any
    // size, or, where that is null, in the mean colour of what is there. Null images: there is neither.
    [[nodiscard]] ScreenPicture pictureOver(const QImage& other) const;

private:
    RowShrinker shrinker_;
    QImage whole_;
    int rows_ = 0;
};

} // namespace amberquill::desktop
