#pragma once

#include <QImage>
#include <QRect>
#include <QSize>
#include <array>
#include <vector>

// Pure functions on pixels. Safe on any thread.

namespace amberquill {

// Blurs a Format_Alpha8 image in place. Three box blurs stand for a Gaussian with this standard deviation, in
// pixels. Beyond the edges all is transparent.
void blurAlpha(QImage& image, double sigma);

// Blurs the colours of a Format_RGBA64_Premultiplied or Format_RGBX64 image in the same way. With eight bits
// a component, gentle slopes would become stairs. Beyond the edges the edge pixels repeat.
void blurColours(QImage& image, double sigma);

// The image with `amount` (-1 … 1) added to every colour component. The alpha stays.
[[nodiscard]] QImage withBrightness(const QImage& image, double amount);

// Scales a Format_RGBA64_Premultiplied image up smoothly; the result is Format_ARGB32_Premultiplied. For
// blurred images: the result is dithered, so that slow changes of colour show no bands. `image` is not empty.
[[nodiscard]] QImage enlarged(const QImage& image, const QSize& pixels);

// Fills parts of a Format_RGB32 image from their surroundings. Each pixel becomes a mean of the nearest four
// pixels outside of the part, to the left and right and above and below, weighted by nearness. Parts that
// touch count as one. A part that covers the whole image is left as it is.
void fillFromAround(QImage& image, std::vector<QRect> parts);

// Thresholds for dithering, below 1: added to a value before it is cut to an integer. They are spread evenly
// over every 8 × 8 pixels.
constexpr std::array<std::array<float, 8>, 8> ditherMatrix() {
    std::array<std::array<float, 8>, 8> matrix{};
    for (unsigned y = 0; y < 8; ++y) {
        for (unsigned x = 0; x < 8; ++x) {
            unsigned rank = 0;
            for (unsigned bit = 0; bit < 3; ++bit) {
                const unsigned a = (x >> bit) & 1U;
                const unsigned b = (y >> bit) & 1U;
                rank |= ((a ^ b) << (5 - 2 * bit)) | (b << (4 - 2 * bit));
            }
            matrix[y][x] = (static_cast<float>(rank) + 0.5F) / 64;
        }
    }
    return matrix;
}

} // namespace amberquill
