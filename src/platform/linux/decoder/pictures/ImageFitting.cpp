#include "platform/linux/decoder/pictures/ImageFitting.h"

#include <QColorSpace>
#include <QColorTransform>
#include <algorithm>
#include <bit>
#include <cmath>
#include <cstdlib>
#include <cstring>
#include <vector>

namespace amberquill::desktop {

namespace {

// The four channels of a pixel as one vector, by the compilers' vector extensions.
using Channels = float __attribute__((vector_size(16)));
using Integers = std::int32_t __attribute__((vector_size(16)));
using Bytes = std::uint8_t __attribute__((vector_size(4)));
using SixteenBytes = std::uint8_t __attribute__((vector_size(16)));
using EightWords = std::uint16_t __attribute__((vector_size(16)));

// Widens the bytes by interleaving zeros. A plain conversion is compiled to one step for each channel, which
// takes four times as long.
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

// The two-parameter family of cubic filters. (0, 1/2) keeps edges sharp and is used for shrinking; (1/3, 1/3)
// avoids steps and halos and is used for enlarging.
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

// The source pixels and weights of each target pixel in a row or column. Each has the same number of source
// pixels; unneeded ones have the weight zero.
struct Taps {
    std::vector<std::size_t> first; // of each target pixel
    std::size_t count = 0;          // for each target pixel
    std::vector<Channels> weights; // `count` for each target pixel, with the sum 1; the same for all channels
};

Taps tapsFor(int source, int target) {
    const double ratio = static_cast<double>(source) / target;
    const double stretch = std::max(ratio, 1.0);
    const double blur = ratio < 1.0 ? 1.0 / 3.0 : 0.0;
    const double sharpness = ratio < 1.0 ? 1.0 / 3.0 : 0.5;
    const int count = std::min(source, static_cast<int>(std::floor(4.0 * stretch)) + 1);
    Taps taps;
    taps.count = static_cast<std::size_t>(count);
    taps.first.reserve(static_cast<std::size_t>(target));
    taps.weights.reserve(static_cast<std::size_t>(target) * taps.count);
    std::vector<double> weights(taps.count);
    for (int i = 0; i < target; ++i) {
        const double centre = (i + 0.5) * ratio - 0.5;
        const int first = std::clamp(static_cast<int>(std::ceil(centre - 2.0 * stretch)), 0, source - count);
        double sum = 0.0;
        for (int k = 0; k < count; ++k) {
            auto& weight = weights[static_cast<std::size_t>(k)];
            weight = cubic((first + k - centre) / stretch, blur, sharpness);
            sum += weight;
        }
        taps.first.push_back(static_cast<std::size_t>(first));
        for (const double weight : weights) {
            taps.weights.push_back(Channels{} + static_cast<float>(weight / sum));
        }
    }
    return taps;
}

// Clamps, because sharpening overshoots and a premultiplied colour must not exceed its alpha.
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

// From this many source pixels per target pixel on, the picture is first shrunk by fast averaging, and only
// the last factor by the filter. The difference is not visible.
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

// The number of sums computed in parallel. A single sum would wait for each addition.
constexpr std::size_t parallelSums = 4;

// Computes `parallelSums` weighted sums. Each is over `count` values `step` apart; the first values are
// `stride` apart.
void addWeighted(const Channels* from, std::size_t step, std::size_t stride, const Channels* weights,
                 std::size_t count, Channels* to, std::size_t toStride) {
    Channels one{};
    Channels two{};
    Channels three{};
    Channels four{};
    for (std::size_t k = 0; k < count; ++k) {
        const Channels weight = weights[k];
        const Channels* const at = from + k * step;
        one += at[0] * weight;
        two += at[stride] * weight;
        three += at[2 * stride] * weight;
        four += at[3 * stride] * weight;
    }
    to[0] = one;
    to[toStride] = two;
    to[2 * toStride] = three;
    to[3 * toStride] = four;
}

std::size_t roundedUp(std::size_t number) {
    return (number + parallelSums - 1) / parallelSums * parallelSums;
}

// Draws `source`, scaled to `size`, into `target` at `offset`. Both are premultiplied ARGB.
void resample(const QImage& source, QImage& target, QPoint offset, QSize size) {
    const auto sourceWidth = static_cast<std::size_t>(source.width());
    const auto sourceHeight = static_cast<std::size_t>(source.height());
    const auto width = static_cast<std::size_t>(size.width());
    const auto lineWidth = roundedUp(width);
    const auto columns = tapsFor(source.width(), size.width());
    std::vector<Channels> wide(parallelSums * sourceWidth);
    std::vector<Channels> lines(lineWidth * roundedUp(sourceHeight)); // of the right width
    for (std::size_t y = 0; y < sourceHeight; y += parallelSums) {
        for (std::size_t i = 0; i < parallelSums && y + i < sourceHeight; ++i) {
            const uchar* const pixels = source.constScanLine(static_cast<int>(y + i));
            for (std::size_t x = 0; x < sourceWidth; ++x) {
                wide[i * sourceWidth + x] = channelsOf(pixels + 4 * x);
            }
        }
        for (std::size_t x = 0; x < width; ++x) {
            addWeighted(wide.data() + columns.first[x], 1, sourceWidth,
                        columns.weights.data() + columns.count * x, columns.count,
                        lines.data() + lineWidth * y + x, lineWidth);
        }
    }
    const auto rows = tapsFor(source.height(), size.height());
    std::vector<Channels> line(lineWidth);
    for (int y = 0; y < size.height(); ++y) {
        const auto row = static_cast<std::size_t>(y);
        for (std::size_t x = 0; x < width; x += parallelSums) {
            addWeighted(lines.data() + lineWidth * rows.first[row] + x, lineWidth, 1,
                        rows.weights.data() + rows.count * row, rows.count, line.data() + x, 1);
        }
        uchar* const pixels = target.scanLine(offset.y() + y) + std::ptrdiff_t{4} * offset.x();
        for (std::size_t x = 0; x < width; ++x) {
            store(pixels + 4 * x, line[x]);
        }
    }
}

// Whether a colour space is practically sRGB. Many programs write sRGB profiles that Qt does not recognise.
// The test colours are not pure ones, because colours outside of sRGB are clipped to those.
bool isNearlySrgb(const QColorSpace& space) {
    constexpr int maximumDifference = 3;
    const auto transform = space.transformationToColorSpace(QColorSpace(QColorSpace::SRgb));
    const auto isUnchanged = [&transform](QRgb colour) {
        const QRgb mapped = transform.map(colour);
        return std::abs(qRed(mapped) - qRed(colour)) <= maximumDifference &&
               std::abs(qGreen(mapped) - qGreen(colour)) <= maximumDifference &&
               std::abs(qBlue(mapped) - qBlue(colour)) <= maximumDifference;
    };
    return isUnchanged(qRgb(200, 100, 100)) && isUnchanged(qRgb(100, 200, 100)) &&
           isUnchanged(qRgb(100, 100, 200));
}

void convertToSrgb(QImage& image) {
    const auto space = image.colorSpace();
    // A profile with sRGB primaries and another gamma is ignored: old programs wrote such values by mistake.
    if (space.isValid() && space.primaries() != QColorSpace::Primaries::SRgb && !isNearlySrgb(space)) {
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
    convertToSrgb(fitted);
    fitted.setDevicePixelRatio(1.0);
    return fitted;
}

} // namespace amberquill::desktop
