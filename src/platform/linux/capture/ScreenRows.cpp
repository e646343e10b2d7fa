#include "platform/linux/capture/ScreenRows.h"

#include <algorithm>
#include <cstring>

namespace amberquill::desktop {

namespace {

constexpr int bytesPerPixel = 4;

// The mean colour of the first rows, as an image of one pixel.
QImage meanColour(const QImage& image, int rows) {
    return image.copy(0, 0, image.width(), rows)
        .scaled(1, 1, Qt::IgnoreAspectRatio, Qt::SmoothTransformation)
        .convertToFormat(QImage::Format_RGB32);
}

// The image with everything below its first `rows` rows filled from the same part of `other`.
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

RowShrinker::RowShrinker(const QSize& size, int shrink)
    : size_(size)
    , shrink_(std::clamp(shrink, 1, most))
    , image_((size.width() + shrink_ - 1) / shrink_, (size.height() + shrink_ - 1) / shrink_,
             QImage::Format_RGB32)
    , sums_(static_cast<std::size_t>(std::max(size.width(), 0)) * bytesPerPixel) {}

void RowShrinker::add(const QRgb* row) {
    if (image_.isNull() || rows_ == size_.height()) {
        return;
    }
    const auto* bytes = reinterpret_cast<const std::uint8_t*>(row);
    std::uint16_t* const sums = sums_.data();
    const std::size_t count = sums_.size();
    for (std::size_t i = 0; i < count; ++i) {
        sums[i] = static_cast<std::uint16_t>(sums[i] + bytes[i]);
    }
    ++rows_;
    if (rows_ % shrink_ == 0 || rows_ == size_.height()) {
        finishRow();
    }
}

void RowShrinker::finishRow() {
    const int y = (rows_ - 1) / shrink_;
    const int height = rows_ - y * shrink_;
    auto* line = reinterpret_cast<QRgb*>(image_.scanLine(y));
    const std::uint16_t* sums = sums_.data();
    for (int x = 0; x < image_.width(); ++x) {
        const int width = std::min(shrink_, size_.width() - x * shrink_);
        std::uint32_t blue = 0;
        std::uint32_t green = 0;
        std::uint32_t red = 0;
        for (int i = 0; i < width; ++i, sums += bytesPerPixel) {
            blue += sums[0];
            green += sums[1];
            red += sums[2];
        }
        const auto count = static_cast<std::uint32_t>(width * height);
        const auto mean = [count](std::uint32_t sum) { return (sum + count / 2) / count; };
        line[x] = 0xFF000000U | mean(red) << 16U | mean(green) << 8U | mean(blue);
    }
    std::fill(sums_.begin(), sums_.end(), std::uint16_t{0});
}

QImage RowShrinker::image() const {
    return rows_ == size_.height() ? image_ : QImage();
}

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
