#include "views/BackgroundWash.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <vector>

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

constexpr std::size_t gradientSteps = 2048;
constexpr std::size_t glowSteps = 4096;

float mix(float from, float to, float part) {
    return from + (to - from) * part;
}

Colour mix(const Colour& from, const Colour& to, float part) {
    return {mix(from.red, to.red, part), mix(from.green, to.green, part), mix(from.blue, to.blue, part)};
}

// The gradient along the diagonal, premultiplied, in 0 … 255.
std::vector<Colour> gradientTable(BackgroundTheme theme) {
    const ThemeColours colours = coloursOf(theme);
    const Colour middle = mix(colours.top, colours.bottom, 0.5F);
    std::vector<Colour> table(gradientSteps + 1);
    for (std::size_t i = 0; i <= gradientSteps; ++i) {
        const float part = static_cast<float>(i) / gradientSteps;
        const Colour colour = part < middleStop
                                  ? mix(colours.top, middle, part / middleStop)
                                  : mix(middle, colours.bottom, (part - middleStop) / (1 - middleStop));
        constexpr float scale = gradientOpacity * 255;
        table[i] = {colour.red * scale, colour.green * scale, colour.blue * scale};
    }
    return table;
}

// The glow's opacity by the square of the distance, as a part of the square of its radius.
std::vector<float> glowTable() {
    std::vector<float> table(glowSteps + 1);
    for (std::size_t i = 0; i <= glowSteps; ++i) {
        table[i] = glowOpacity * (1 - std::sqrt(static_cast<float>(i) / glowSteps));
    }
    return table;
}

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

} // namespace

QImage backgroundWash(BackgroundTheme theme, const QSize& pixels, double devicePixelRatio) {
    QImage image(pixels, QImage::Format_ARGB32_Premultiplied);
    if (image.isNull()) {
        return image;
    }
    static constexpr auto dither = ditherMatrix();
    const std::vector<Colour> gradient = gradientTable(theme);
    const std::vector<float> glow = glowTable();
    const auto width = static_cast<float>(pixels.width());
    const auto height = static_cast<float>(pixels.height());
    const float toGradient = gradientSteps / (width * width + height * height);
    const double radius = glowRadius * devicePixelRatio;
    const auto toGlow = static_cast<float>(glowSteps / (radius * radius));
    for (int y = 0; y < pixels.height(); ++y) {
        auto* line = reinterpret_cast<QRgb*>(image.scanLine(y));
        const float down = static_cast<float>(y) + 0.5F;
        const auto& ditherRow = dither.at(static_cast<std::size_t>(y) % 8);
        for (int x = 0; x < pixels.width(); ++x) {
            const float across = static_cast<float>(x) + 0.5F;
            const Colour& base =
                gradient[static_cast<std::size_t>((across * width + down * height) * toGradient)];
            const float aside = across - width / 2;
            const float distance =
                std::min((aside * aside + down * down) * toGlow, static_cast<float>(glowSteps));
            const float white = glow[static_cast<std::size_t>(distance)];
            const float fraction = ditherRow.at(static_cast<std::size_t>(x) % 8);
            const float light = white * 255 + fraction;
            const float rest = 1 - white;
            const auto alpha = static_cast<int>(gradientOpacity * 255 * rest + light);
            line[x] =
                qRgba(static_cast<int>(base.red * rest + light), static_cast<int>(base.green * rest + light),
                      static_cast<int>(base.blue * rest + light), alpha);
        }
    }
    return image;
}

} // namespace amberquill
