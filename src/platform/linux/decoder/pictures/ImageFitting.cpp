#include "platform/linux/decoder/pictures/ImageFitting.h"

#include <QColorSpace>
#include <algorithm>
#include <bit>
#include <cmath>
#include <cstring>
#include <vector>

namespace amberquill::desktop {

namespace {

// The four channels of a pixel at once, in the compilers' own notation for what every processor has.
using Channels = float __attribute__((vector_size(16)));
using Integers = std::int32_t __attribute__((vector_size(16)));
using Bytes = std::uint8_t __attribute__((vector_size(4)));
using SixteenBytes = std::uint8_t __attribute__((vector_size(16)));
using EightWords = std::uint16_t __attribute__((vector_size(16)));

// Zeros are put between the bytes, then between the pairs: the compilers turn a plain conversion into one
// step for each channel, which takes four times as long.
Channels channelsOf(const uchar* pixel) {
    if constexpr (std::endian::native == std::endian::big) {
        Bytes bytes;
        std::memcpy(&bytes, pixel, sizeof bytes);
        return __builtin_convertvector(bytes, Channels);
    }
    std::int32_t packed = 0;
    std::memcpy(&packed, pixel, sizeof packed);
    const auto bytes = std::bit_cast<SixteenBytes>(Integers{packed});
    const auto pairs = std::bit_cast<EightWords>(__builtin_shufflevector(
        bytes, SixteenBytes{}, 0, 16, 1, 17, 2, 18, 3, 19, 4, 20, 5, 21, 6, 22, 7, 23));
    const auto words =
        std::bit_cast<Integers>(__builtin_shufflevector(pairs, EightWords{}, 0, 8, 1, 9, 2, 10, 3, 11));
    return __builtin_convertvector(words, Channels);
}

// The family of cubic filters with two parameters: (0, 1/2) keeps edges sharp and is right for shrinking,
// (1/3, 1/3) leaves no stair-steps and no halos and is right for enlarging.
double cubic(double distance, double blur, double sharpness) {
    const double x = std::abs(distance);
    if (x < 1.0) {
        return ((12.0 - 9.0 * blur - 6.0 * sharpness) * x * x * x +
                (-18.0 + 12.0 * blur + 6.0 * sharpness) * x * x + (6.0 - 2.0 * blur)) /
               6.0;
    }
    if (x < 2.0) {
        return ((-blur - 6.0 * sharpness) * x * x * x + (6.0 * blur + 30.0 * sharpness) * x * x +
                (-12.0 * blur - 48.0 * sharpness) * x + (8.0 * blur + 24.0 * sharpness)) /
               6.0;
    }
    return 0.0;
}

// Which source pixels, with which weights, one target pixel is made of, along one axis.
struct Taps {
    int first = 0;
    std::vector<float> weights; // sum up to 1
};

std::vector<Taps> tapsFor(int source, int target) {
    const double ratio = static_cast<double>(source) / target;
    const double stretch = std::max(ratio, 1.0);
    const double blur = ratio < 1.0 ? 1.0 / 3.0 : 0.0;
    const double sharpness = ratio < 1.0 ? 1.0 / 3.0 : 0.5;
    std::vector<Taps> all(static_cast<std::size_t>(target));
    for (int i = 0; i < target; ++i) {
        const double centre = (i + 0.5) * ratio - 0.5;
        const int first = std::max(0, static_cast<int>(std::ceil(centre - 2.0 * stretch)));
        const int last = std::min(source - 1, static_cast<int>(std::floor(centre + 2.0 * stretch)));
        auto& taps = all[static_cast<std::size_t>(i)];
        taps.first = first;
        double sum = 0.0;
        for (int k = first; k <= last; ++k) {
            const double weight = cubic((k - centre) / stretch, blur, sharpness);
            taps.weights.push_back(static_cast<float>(weight));
            sum += weight;
        }
        for (auto& weight : taps.weights) {
            weight = static_cast<float>(weight / sum);
        }
    }
    return all;
}

// Sharpening overshoots; a premultiplied colour must not exceed its alpha.
void store(uchar* pixel, Channels value) {
    constexpr int alphaAt = std::endian::native == std::endian::little ? 3 : 0;
    const float alpha = std::clamp(value[alphaAt], 0.0F, 255.0F);
    const Channels lowest{};
    const Channels highest = lowest + alpha;
    value = value < lowest ? lowest : value;
    value = value > highest ? highest : value;
    const auto rounded = __builtin_convertvector(value + 0.5F, Integers);
    const auto bytes = __builtin_convertvector(rounded, Bytes);
    std::memcpy(pixel, &bytes, sizeof bytes);
}

// Above this many source pixels to a target pixel, all but the last of the shrinking is plain averaging: it
// is quick, and the eye cannot tell.
constexpr int shrinkFilteredBy = 4;

QImage averaged(const QImage& source, QSize target) {
    const int factor = std::max(source.width() / target.width(), source.height() / target.height());
    if (factor < shrinkFilteredBy) {
        return source;
    }
    const int by = factor / 2;
    return source.scaled(std::max(source.width() / by, 1), std::max(source.height() / by, 1),
                         Qt::IgnoreAspectRatio, Qt::SmoothTransformation);
}

// Draws `source`, scaled to `size`, into `target` at `offset`. Both are premultiplied ARGB.
void resample(const QImage& source, QImage& target, QPoint offset, QSize size) {
    const auto width = static_cast<std::size_t>(size.width());
    const auto columns = tapsFor(source.width(), size.width());
    std::vector<Channels> line(static_cast<std::size_t>(source.width()));
    std::vector<Channels> lines(width * static_cast<std::size_t>(source.height())); // of the right width
    for (int y = 0; y < source.height(); ++y) {
        const uchar* const pixels = source.constScanLine(y);
        for (std::size_t x = 0; x < line.size(); ++x) {
            line[x] = channelsOf(pixels + 4 * x);
        }
        Channels* const narrowed = lines.data() + width * static_cast<std::size_t>(y);
        for (std::size_t x = 0; x < width; ++x) {
            const auto& column = columns[x];
            const Channels* const from = line.data() + column.first;
            Channels sum{};
            for (std::size_t k = 0; k < column.weights.size(); ++k) {
                sum += from[k] * column.weights[k];
            }
            narrowed[x] = sum;
        }
    }
    const auto rows = tapsFor(source.height(), size.height());
    for (int y = 0; y < size.height(); ++y) {
        const auto& row = rows[static_cast<std::size_t>(y)];
        const Channels* const from = lines.data() + width * static_cast<std::size_t>(row.first);
        uchar* const pixels = target.scanLine(offset.y() + y) + std::ptrdiff_t{4} * offset.x();
        for (std::size_t x = 0; x < width; ++x) {
            Channels sum{};
            for (std::size_t k = 0; k < row.weights.size(); ++k) {
                sum += from[k * width + x] * row.weights[k];
            }
            store(pixels + 4 * x, sum);
        }
    }
}

void convertToScreenColours(QImage& image) {
    const auto space = image.colorSpace();
    // A gamma value alone is what old programs wrote without meaning it.
    if (space.isValid() && space.primaries() != QColorSpace::Primaries::SRgb) {
        image.convertToColorSpace(QColorSpace(QColorSpace::SRgb));
    }
    image.setColorSpace(QColorSpace());
}

} // namespace

QSize fittedSize(QSize size, int edge) {
    const double scale = static_cast<double>(edge) / std::max(size.width(), size.height());
    return {std::clamp(static_cast<int>(std::lround(size.width() * scale)), 1, edge),
            std::clamp(static_cast<int>(std::lround(size.height() * scale)), 1, edge)};
}

QImage fittedImage(const QImage& image, int edge) {
    if (image.isNull() || edge < 1) {
        return {};
    }
    const auto source = image.convertToFormat(QImage::Format_ARGB32_Premultiplied);
    const auto size = fittedSize(source.size(), edge);
    QImage fitted;
    if (source.size() == QSize(edge, edge)) {
        fitted = source;
    } else {
        fitted = QImage(edge, edge, QImage::Format_ARGB32_Premultiplied);
        if (source.isNull() || fitted.isNull()) {
            return {};
        }
        fitted.fill(Qt::transparent);
        resample(averaged(source, size), fitted, {(edge - size.width()) / 2, (edge - size.height()) / 2},
                 size);
        fitted.setColorSpace(source.colorSpace());
    }
    convertToScreenColours(fitted);
    fitted.setDevicePixelRatio(1.0);
    return fitted;
}

} // namespace amberquill::desktop
