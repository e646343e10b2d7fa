#include "views/BackgroundWash.h"

#include <QPainter>
#include <algorithm>
#include <array>
#include <cmath>

namespace amberquill {

namespace {

struct Colour {
    float red;
    float green;
    float blue;
};

struct ThemeColours {
    Colour top;
    Colour bottom;
};

ThemeColours coloursOf(BackgroundTheme theme) {
    switch (theme) {
    case BackgroundTheme::Purple:
        return {{0.40F, 0.25F, 0.62F}, {0.14F, 0.07F, 0.30F}};
    case BackgroundTheme::Green:
        return {{0.13F, 0.47F, 0.38F}, {0.02F, 0.17F, 0.14F}};
    case BackgroundTheme::Blue:
        break;
    }
    return {{0.18F, 0.35F, 0.63F}, {0.04F, 0.10F, 0.28F}};
}

constexpr float gradientOpacity = 0.58F;
constexpr float middleStop = 0.45F;
constexpr float glowOpacity = 0.12F;
constexpr double glowRadius = 900; // points

Colour mix(const Colour& from, const Colour& to, float part) {
    const auto component = [part](float a, float b) { return a + (b - a) * part; };
    return {component(from.red, to.red), component(from.green, to.green), component(from.blue, to.blue)};
}

// One component of the gradient, premultiplied, in 0 … 255: a straight line of the part of the way on either
// side of the middle stop. Written so that a row of pixels is computed several at a time.
struct Ramp {
    float start = 0;
    float slope = 0;
    float laterSlope = 0; // what the slope changes by from the middle stop on

    Ramp(float top, float middle, float bottom) {
        constexpr float scale = gradientOpacity * 255;
        start = top * scale;
        slope = (middle - top) * scale / middleStop;
        laterSlope = (bottom - middle) * scale / (1 - middleStop) - slope;
    }

    [[nodiscard]] float at(float part) const {
        return start + slope * part + laterSlope * std::max(part - middleStop, 0.0F);
    }
};

// What is added to a value before it is cut to an integer: an even mix of fractions in every 8 × 8 pixels.
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
    static constexpr auto dither = ditherMatrix();
    const ThemeColours colours = coloursOf(theme);
    const Colour middle = mix(colours.top, colours.bottom, 0.5F);
    const Ramp red(colours.top.red, middle.red, colours.bottom.red);
    const Ramp green(colours.top.green, middle.green, colours.bottom.green);
    const Ramp blue(colours.top.blue, middle.blue, colours.bottom.blue);
    const auto width = static_cast<float>(pixels.width());
    const auto height = static_cast<float>(pixels.height());
    const float toPart = 1 / (width * width + height * height);
    const float toGlow = 1 / static_cast<float>(glowRadius * devicePixelRatio);
    for (int y = 0; y < pixels.height(); ++y) {
        auto* line = reinterpret_cast<QRgb*>(image.scanLine(y));
        const float down = static_cast<float>(y) + 0.5F;
        const float* ditherRow = dither[static_cast<std::size_t>(y) % dither.size()].data();
        for (int x = 0; x < pixels.width(); x += groupWidth) {
            std::array<QRgb, groupWidth> group{};
            for (int i = 0; i < groupWidth; ++i) {
                const float across = static_cast<float>(x + i) + 0.5F;
                const float part = (across * width + down * height) * toPart;
                const float aside = across - width / 2;
                const float white =
                    glowOpacity * std::max(1 - std::sqrt(aside * aside + down * down) * toGlow, 0.0F);
                const float light = white * 255 + ditherRow[i];
                const float rest = 1 - white;
                // All within 0 … 255, but for the last group's pixels beyond the edge, which are not kept.
                group[static_cast<std::size_t>(i)] =
                    packed(gradientOpacity * 255 * rest + light, red.at(part) * rest + light,
                           green.at(part) * rest + light, blue.at(part) * rest + light);
            }
            std::copy_n(group.begin(), std::min(groupWidth, pixels.width() - x), line + x);
        }
    }
    return image;
}

QImage opaqueBackground(BackgroundTheme theme, const QSize& pixels, double devicePixelRatio,
                        const QImage& backdrop) {
    QImage wash = backgroundWash(theme, pixels, devicePixelRatio);
    if (wash.isNull()) {
        return wash;
    }
    if (backdrop.isNull()) {
        // Premultiplied colours are what they are over black.
        for (int y = 0; y < wash.height(); ++y) {
            auto* line = reinterpret_cast<QRgb*>(wash.scanLine(y));
            std::for_each(line, line + wash.width(), [](QRgb& pixel) { pixel |= 0xff000000U; });
        }
        wash.reinterpretAsFormat(QImage::Format_RGB32);
        return wash;
    }
    QImage image(pixels, QImage::Format_RGB32);
    QPainter painter(&image);
    painter.setRenderHint(QPainter::SmoothPixmapTransform);
    painter.drawImage(image.rect(), backdrop.convertToFormat(QImage::Format_RGB32));
    painter.drawImage(0, 0, wash);
    return image;
}

} // namespace amberquill
