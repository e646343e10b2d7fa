#include "views/BackgroundGrid.h"

#include "views/Dither.h"

#include <QRgba64>
#include <array>
#include <cmath>
#include <cstddef>

namespace amberquill {

namespace {

// Device pixels between two corners. The corner of index 0 lies half as far outside of the picture, so that a
// row of pixels falls into whole cells of the dither matrix.
constexpr int cell = 8;
constexpr int before = cell / 2;
constexpr std::size_t components = 3;

constexpr auto dither = ditherMatrix();

float place(int index) {
    return static_cast<float>(cell * index - before);
}

// Corners that enclose so many pixels.
int cornersAround(int pixels) {
    return (pixels + before + cell - 1) / cell + 1;
}

// Where a line through the middles of `count` pixels, which span `length`, is met.
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

} // namespace

BackgroundGrid::BackgroundGrid(const BackgroundShade& shade, const QSize& pixels, const QImage& backdrop)
    : columns_(cornersAround(pixels.width())) {
    const QImage colours = backdrop.convertToFormat(QImage::Format_RGBX64);
    const int count = cornersAround(pixels.height());
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
                // All within 0 … 255. Through signed integers, as in a wash alone.
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

} // namespace amberquill
