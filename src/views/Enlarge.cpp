#include "views/Enlarge.h"

#include "views/Dither.h"

#include <QRgba64>
#include <algorithm>
#include <array>
#include <cstddef>
#include <vector>

namespace amberquill {

namespace {

constexpr auto enlargedDither = ditherMatrix();

// Red, green, blue and alpha, 0 … 255.
using Channels = std::array<float, 4>;

// Where the middle of each of `length` pixels lies between the middles of `count` pixels that span the same.
struct Place {
    int first = 0;
    int second = 0;
    float part = 0; // of the way from the first to the second
};

std::vector<Place> placesOf(int length, int count) {
    std::vector<Place> places(static_cast<std::size_t>(length));
    for (int i = 0; i < length; ++i) {
        const float exact =
            (static_cast<float>(i) + 0.5F) * static_cast<float>(count) / static_cast<float>(length) - 0.5F;
        const float held = std::clamp(exact, 0.0F, static_cast<float>(count - 1));
        const int first = static_cast<int>(held);
        places[static_cast<std::size_t>(i)] = {first, std::min(first + 1, count - 1),
                                               held - static_cast<float>(first)};
    }
    return places;
}

Channels blended(const Channels& from, const Channels& to, float part) {
    Channels result{};
    for (std::size_t i = 0; i < result.size(); ++i) {
        result[i] = from[i] + (to[i] - from[i]) * part;
    }
    return result;
}

Channels channelsOf(QRgba64 colour) {
    constexpr float level = 257;
    return {static_cast<float>(colour.red()) / level, static_cast<float>(colour.green()) / level,
            static_cast<float>(colour.blue()) / level, static_cast<float>(colour.alpha()) / level};
}

} // namespace

QImage enlarged(const QImage& image, const QSize& pixels) {
    Q_ASSERT(image.format() == QImage::Format_RGBA64_Premultiplied && !image.isNull());
    QImage result(pixels, QImage::Format_ARGB32_Premultiplied);
    const std::vector<Place> across = placesOf(result.width(), image.width());
    const std::vector<Place> down = placesOf(result.height(), image.height());
    std::vector<Channels> row(static_cast<std::size_t>(image.width()));
    for (int y = 0; y < result.height(); ++y) {
        const Place& lines = down[static_cast<std::size_t>(y)];
        const auto* upper = reinterpret_cast<const QRgba64*>(image.constScanLine(lines.first));
        const auto* lower = reinterpret_cast<const QRgba64*>(image.constScanLine(lines.second));
        for (std::size_t x = 0; x < row.size(); ++x) {
            row[x] = blended(channelsOf(upper[x]), channelsOf(lower[x]), lines.part);
        }
        auto* line = reinterpret_cast<QRgb*>(result.scanLine(y));
        const auto& rounding = enlargedDither[static_cast<std::size_t>(y) % enlargedDither.size()];
        for (std::size_t x = 0; x < across.size(); ++x) {
            const Place& at = across[x];
            const Channels colour = blended(row[static_cast<std::size_t>(at.first)],
                                            row[static_cast<std::size_t>(at.second)], at.part);
            std::array<int, 4> levels{};
            for (std::size_t i = 0; i < levels.size(); ++i) {
                // All within 0 … 255, and the same for all, so that none exceeds the alpha.
                levels[i] = static_cast<int>(colour[i] + rounding[x % rounding.size()]);
            }
            line[x] = qRgba(levels[0], levels[1], levels[2], levels[3]);
        }
    }
    return result;
}

} // namespace amberquill
