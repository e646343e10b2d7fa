#include "platform/linux/capture/RowShrinker.h"

#include <algorithm>

namespace amberquill::desktop {

namespace {

constexpr int bytesPerPixel = 4;

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

} // namespace amberquill::desktop
