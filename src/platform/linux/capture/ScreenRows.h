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

    // Once all rows are in. Null images: there are rows missing, or no memory was there.
    [[nodiscard]] ScreenPicture picture() const;

private:
    RowShrinker shrinker_;
    QImage whole_;
    int rows_ = 0;
};

} // namespace amberquill::desktop
