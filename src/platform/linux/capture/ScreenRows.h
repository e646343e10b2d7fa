#pragma once

#include "platform/ScreenCapture.h"
#include "platform/linux/capture/RowShrinker.h"

namespace amberquill::desktop {

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
