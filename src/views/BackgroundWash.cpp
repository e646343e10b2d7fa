#include "views/BackgroundWash.h"

#include "views/BackgroundGrid.h"
#include "views/BackgroundShade.h"
#include "views/Dither.h"

#include <algorithm>
#include <array>

namespace amberquill {

namespace {

constexpr auto washDither = ditherMatrix();

// Pixels are computed in groups, several at a time.
constexpr int groupWidth = 8;

// Through signed integers, for which processors have a conversion of several at a time.
QRgb packed(float alpha, float red, float green, float blue) {
    return static_cast<QRgb>(static_cast<int>(alpha)) << 24U |
           static_cast<QRgb>(static_cast<int>(red)) << 16U |
           static_cast<QRgb>(static_cast<int>(green)) << 8U | static_cast<QRgb>(static_cast<int>(blue));
}

} // namespace

QImage backgroundWash(BackgroundTheme theme, const QSize& pixels, double devicePixelRatio) {
    QImage image(pixels, QImage::Format_ARGB32_Premultiplied);
    if (image.isNull()) {
        return image;
    }
    const BackgroundShade shade(theme, pixels, devicePixelRatio);
    for (int y = 0; y < pixels.height(); ++y) {
        auto* line = reinterpret_cast<QRgb*>(image.scanLine(y));
        const float down = static_cast<float>(y) + 0.5F;
        const float* ditherRow = washDither[static_cast<std::size_t>(y) % washDither.size()].data();
        for (int x = 0; x < pixels.width(); x += groupWidth) {
            std::array<QRgb, groupWidth> group{};
            for (int i = 0; i < groupWidth; ++i) {
                const Shade at = shade.at(static_cast<float>(x + i) + 0.5F, down);
                const float rounding = ditherRow[i];
                // All within 0 … 255, but for the last group's pixels beyond the edge, which are not kept.
                group[static_cast<std::size_t>(i)] =
                    packed(at.alpha + rounding, at.red + rounding, at.green + rounding, at.blue + rounding);
            }
            std::copy_n(group.begin(), std::min(groupWidth, pixels.width() - x), line + x);
        }
    }
    return image;
}

QImage opaqueBackground(BackgroundTheme theme, const QSize& pixels, double devicePixelRatio,
                        const QImage& backdrop) {
    if (!backdrop.isNull()) {
        QImage image(pixels, QImage::Format_RGB32);
        if (!image.isNull()) {
            BackgroundGrid(BackgroundShade(theme, pixels, devicePixelRatio), pixels, backdrop).paint(image);
        }
        return image;
    }
    QImage wash = backgroundWash(theme, pixels, devicePixelRatio);
    // Premultiplied colours are what they are over black.
    for (int y = 0; y < wash.height(); ++y) {
        auto* line = reinterpret_cast<QRgb*>(wash.scanLine(y));
        std::for_each(line, line + wash.width(), [](QRgb& pixel) { pixel |= 0xff000000U; });
    }
    wash.reinterpretAsFormat(QImage::Format_RGB32);
    return wash;
}

} // namespace amberquill
