#include "views/BackgroundWash.h"

#include "views/ImageEffects.h"

#include <QRgba64>
#include <algorithm>
#include <array>
#include <cmath>
#include <cstddef>
#include <vector>

namespace amberquill {

namespace {

// The wash at a point: premultiplied components and the alpha, 0 … 255.
struct Shade {
    float red;
    float green;
    float blue;
    float alpha;
};

// The wash of a theme as a function of the place: a gradient from the top left to the bottom right corner
// with an opacity of 0.58, and over it a white glow, which falls from 0.12 in the middle of the top edge to 0
// at 900 points. In this file, so that the compiler vectorises loops over a row of pixels.
class BackgroundShade {
public:
    BackgroundShade(BackgroundTheme theme, const QSize& pixels, double devicePixelRatio)
        : BackgroundShade(coloursOf(theme), static_cast<float>(pixels.width()),
                          static_cast<float>(pixels.height()),
                          1 / static_cast<float>(glowRadius * devicePixelRatio)) {}

    // In device pixels from the top left corner. The centres of pixels are at halves.
    [[nodiscard]] Shade at(float across, float down) const {
        const float part = (across * width_ + down * height_) * toPart_;
        const float aside = across - width_ / 2;
        const float white =
            glowOpacity * std::max(1 - std::sqrt(aside * aside + down * down) * toGlow_, 0.0F);
        const float light = white * 255;
        const float rest = 1 - white;
        return {red_.at(part) * rest + light, green_.at(part) * rest + light, blue_.at(part) * rest + light,
                gradientOpacity * 255 * rest + light};
    }

private:
    static constexpr float gradientOpacity = 0.58F;
    static constexpr float middleStop = 0.45F;
    static constexpr float glowOpacity = 0.12F;
    static constexpr double glowRadius = 900; // points

    struct Colour {
        float red;
        float green;
        float blue;
    };

    struct ThemeColours {
        Colour top;
        Colour bottom;
    };

    // One component of the gradient, premultiplied, 0 … 255. It is piecewise linear in the part of the way,
    // with the mean of both ends at the middle stop.
    class Ramp {
    public:
        Ramp(float top, float bottom)
            : start_(top * scale)
            , slope_((bottom - top) / 2 * scale / middleStop)
            , laterSlope_((bottom - top) / 2 * scale / (1 - middleStop) - slope_) {}

        [[nodiscard]] float at(float part) const {
            return start_ + slope_ * part + laterSlope_ * std::max(part - middleStop, 0.0F);
        }

    private:
        static constexpr float scale = gradientOpacity * 255;

        float start_;
        float slope_;
        float laterSlope_; // added to the slope from the middle stop on
    };

    BackgroundShade(const ThemeColours& colours, float width, float height, float toGlow)
        : red_(colours.top.red, colours.bottom.red)
        , green_(colours.top.green, colours.bottom.green)
        , blue_(colours.top.blue, colours.bottom.blue)
        , width_(width)
        , height_(height)
        , toPart_(1 / (width * width + height * height))
        , toGlow_(toGlow) {}

    static ThemeColours coloursOf(BackgroundTheme theme) {
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

    Ramp red_;
    Ramp green_;
    Ramp blue_;
    float width_;
    float height_;
    float toPart_;
    float toGlow_;
};

// Device pixels between two grid points. The first point lies half a cell before the picture, so that a row
// of pixels falls into whole rows of the dither matrix.
constexpr int cell = 8;
constexpr int before = cell / 2;
constexpr std::size_t components = 3;

constexpr auto dither = ditherMatrix();

float place(int index) {
    return static_cast<float>(cell * index - before);
}

// How many grid points enclose that many pixels.
int pointsAround(int pixels) {
    return (pixels + before + cell - 1) / cell + 1;
}

// The two of `count` source pixels, which together span `length`, that a position lies between.
struct Between {
    Between(float at, int length, int count) {
        const float exact = at * static_cast<float>(count) / static_cast<float>(length) - 0.5F;
        const float held = std::clamp(exact, 0.0F, static_cast<float>(count - 1));
        first = static_cast<int>(held);
        second = std::min(first + 1, count - 1);
        part = held - static_cast<float>(first);
    }

    int first = 0;
    int second = 0;
    float part = 0; // of the way from the first to the second
};

// In 0 … 255.
std::array<float, components> mixed(QRgba64 from, QRgba64 to, float part) {
    const auto mix = [part](int a, int b) {
        return (static_cast<float>(a) + static_cast<float>(b - a) * part) / 257;
    };
    return {mix(from.red(), to.red()), mix(from.green(), to.green()), mix(from.blue(), to.blue())};
}

// The wash over a blurred backdrop. Neither has detail, so both are combined at the points of a coarse grid,
// and pixels are interpolated between the points.
class BackgroundGrid {
public:
    // For a picture of this size; the backdrop, of any size, fills it.
    BackgroundGrid(const BackgroundShade& shade, const QSize& pixels, const QImage& backdrop);

    // Fills an image of that size in Format_RGB32, dithered.
    void paint(QImage& image) const;

private:
    // A row of the grid, or one interpolated between two: all red components, then all green, then all blue
    // ones, 0 … 255.
    using Row = std::vector<float>;

    [[nodiscard]] Row row(const BackgroundShade& shade, const QSize& pixels, const QImage& backdrop,
                          int index) const;

    int columns_;
    std::vector<Row> rows_;
};

BackgroundGrid::BackgroundGrid(const BackgroundShade& shade, const QSize& pixels, const QImage& backdrop)
    : columns_(pointsAround(pixels.width())) {
    const QImage colours = backdrop.convertToFormat(QImage::Format_RGBX64);
    const int count = pointsAround(pixels.height());
    rows_.reserve(static_cast<std::size_t>(count));
    for (int index = 0; index < count; ++index) {
        rows_.push_back(row(shade, pixels, colours, index));
    }
}

BackgroundGrid::Row BackgroundGrid::row(const BackgroundShade& shade, const QSize& pixels,
                                        const QImage& backdrop, int index) const {
    const auto columns = static_cast<std::size_t>(columns_);
    Row values(columns * components);
    const float down = place(index);
    const Between lines(down, pixels.height(), backdrop.height());
    const auto* upper = reinterpret_cast<const QRgba64*>(backdrop.constScanLine(lines.first));
    const auto* lower = reinterpret_cast<const QRgba64*>(backdrop.constScanLine(lines.second));
    for (std::size_t column = 0; column < columns; ++column) {
        const float across = place(static_cast<int>(column));
        const Between at(across, pixels.width(), backdrop.width());
        const auto above = mixed(upper[at.first], upper[at.second], at.part);
        const auto below = mixed(lower[at.first], lower[at.second], at.part);
        const Shade over = shade.at(across, down);
        const std::array<float, components> light{over.red, over.green, over.blue};
        const float through = 1 - over.alpha / 255;
        for (std::size_t i = 0; i < components; ++i) {
            const float behind = above[i] + (below[i] - above[i]) * lines.part;
            values[i * columns + column] = behind * through + light[i];
        }
    }
    return values;
}

void BackgroundGrid::paint(QImage& image) const {
    const auto columns = static_cast<std::size_t>(columns_);
    Row values(columns * components);
    std::vector<QRgb> pixels((columns - 1) * cell);
    std::array<float, cell> parts{};
    for (int i = 0; i < cell; ++i) {
        parts[static_cast<std::size_t>(i)] = (static_cast<float>(i) + 0.5F) / cell;
    }
    for (int y = 0; y < image.height(); ++y) {
        const auto index = static_cast<std::size_t>((y + before) / cell);
        const float down = parts[static_cast<std::size_t>((y + before) % cell)];
        const Row& upper = rows_[index];
        const Row& lower = rows_[index + 1];
        for (std::size_t i = 0; i < values.size(); ++i) {
            values[i] = upper[i] + (lower[i] - upper[i]) * down;
        }
        std::array<float, cell> rounding{};
        for (std::size_t i = 0; i < cell; ++i) {
            rounding[i] = dither[static_cast<std::size_t>(y) % cell][(i + before) % cell];
        }
        const float* red = values.data();
        const float* green = red + columns;
        const float* blue = green + columns;
        for (std::size_t column = 0; column + 1 < columns; ++column) {
            const float redStep = red[column + 1] - red[column];
            const float greenStep = green[column + 1] - green[column];
            const float blueStep = blue[column + 1] - blue[column];
            QRgb* const group = pixels.data() + column * cell;
            for (std::size_t i = 0; i < cell; ++i) {
                // All within 0 … 255. Signed, as in packed().
                const auto level = [&](float start, float step) {
                    return static_cast<QRgb>(static_cast<int>(start + step * parts[i] + rounding[i]));
                };
                group[i] = 0xFF000000U | level(red[column], redStep) << 16U |
                           level(green[column], greenStep) << 8U | level(blue[column], blueStep);
            }
        }
        std::copy_n(pixels.begin() + before, image.width(), reinterpret_cast<QRgb*>(image.scanLine(y)));
    }
}

constexpr auto washDither = ditherMatrix();

// Pixels are computed in groups of this many, for vectorisation.
constexpr int groupWidth = 8;

// Converts to signed integers, because processors have a vector instruction for that.
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
                // All within 0 … 255, except beyond the right edge; those pixels are dropped.
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
    // A premultiplied colour over black is the same colour with full alpha.
    for (int y = 0; y < wash.height(); ++y) {
        auto* line = reinterpret_cast<QRgb*>(wash.scanLine(y));
        std::for_each(line, line + wash.width(), [](QRgb& pixel) { pixel |= 0xff000000U; });
    }
    wash.reinterpretAsFormat(QImage::Format_RGB32);
    return wash;
}

} // namespace amberquill
