#include "platform/linux/capture/ScreenRows.h"

#include <algorithm>
#include <cstring>

namespace amberquill::desktop {

namespace {

// One pixel.
QImage meanColour(const QImage& image, int rows) {
    return image.copy(0, 0, image.width(), rows)
        .scaled(1, 1, Qt::IgnoreAspectRatio, Qt::SmoothTransformation)
        .convertToFormat(QImage::Format_RGB32);
}

// The image with all below its first rows filled from the same part of the other one.
QImage filled(const QImage& image, int rows, const QImage& other) {
    if (image.isNull() || rows >= image.height()) {
        return image;
    }
    const int above = std::min(rows * other.height() / image.height(), other.height() - 1);
    const QImage below =
        other.copy(0, above, other.width(), other.height() - above)
            .scaled(image.width(), image.height() - rows, Qt::IgnoreAspectRatio, Qt::SmoothTransformation)
            .convertToFormat(QImage::Format_RGB32);
    if (below.isNull()) {
        return {};
    }
    QImage whole = image;
    for (int y = rows; y < whole.height(); ++y) {
        std::memcpy(whole.scanLine(y), below.constScanLine(y - rows),
                    static_cast<std::size_t>(whole.width()) * sizeof(QRgb));
    }
    return whole;
}

} // namespace

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

ScreenPicture ScreenRows::pictureOver(const QImage& other) const {
    const int finished = shrinker_.finishedRows();
    const QImage& begun = shrinker_.begun();
    if (begun.isNull() || (finished == 0 && other.isNull())) {
        return {};
    }
    const QImage below = !other.isNull() ? other : meanColour(begun, finished);
    return {filled(begun, finished, below), filled(whole_, rows_, below)};
}

ScreenPicture ScreenRows::picture() const {
    const QImage shrunk = shrinker_.image();
    return {shrunk, shrunk.isNull() ? QImage() : whole_};
}

} // namespace amberquill::desktop
