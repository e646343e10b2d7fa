#include "platform/linux/capture/ScreenRows.h"

#include <algorithm>

namespace amberquill::desktop {

ScreenRows::ScreenRows(const QSize& size, int shrink, bool alsoWhole)
    : shrinker_(size, shrink)
    , whole_(alsoWhole ? QImage(size, QImage::Format_RGB32) : QImage()) {}

void ScreenRows::add(const QRgb* row) {
    shrinker_.add(row);
    if (rows_ < whole_.height()) {
        auto* line = reinterpret_cast<QRgb*>(whole_.scanLine(rows_));
        std::transform(row, row + whole_.width(), line, [](QRgb pixel) { return pixel | 0xFF000000U; });
        ++rows_;
    }
}

ScreenPicture ScreenRows::picture() const {
    const QImage shrunk = shrinker_.image();
    return {shrunk, shrunk.isNull() ? QImage() : whole_};
}

} // namespace amberquill::desktop
