#include "views/Blur.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <vector>

namespace amberquill {

namespace {

constexpr int passes = 3;

// Radii of three boxes that together have the variance of the Gaussian.
std::array<int, passes> boxRadii(double sigma) {
    const double ideal = std::sqrt(12 * sigma * sigma / passes + 1);
    int lower = static_cast<int>(std::floor(ideal));
    if (lower % 2 == 0) {
        --lower;
    }
    const double smaller =
        (12 * sigma * sigma - passes * lower * lower - 4 * passes * lower - 3 * passes) / (-4.0 * lower - 4);
    const auto smallerCount = static_cast<int>(std::lround(smaller));
    std::array<int, passes> radii{};
    for (int i = 0; i < passes; ++i) {
        radii.at(static_cast<std::size_t>(i)) = ((i < smallerCount ? lower : lower + 2) - 1) / 2;
    }
    return radii;
}

// One box blur over `count` values that lie `stride` apart.
void boxBlur(uchar* values, int count, qsizetype stride, int radius, std::vector<uchar>& copy) {
    copy.resize(static_cast<std::size_t>(count));
    for (int i = 0; i < count; ++i) {
        copy[static_cast<std::size_t>(i)] = values[i * stride];
    }
    const int width = 2 * radius + 1;
    int sum = 0;
    for (int i = 0; i < std::min(radius, count); ++i) {
        sum += copy[static_cast<std::size_t>(i)];
    }
    for (int i = 0; i < count; ++i) {
        if (i + radius < count) {
            sum += copy[static_cast<std::size_t>(i) + static_cast<std::size_t>(radius)];
        }
        if (i - radius - 1 >= 0) {
            sum -= copy[static_cast<std::size_t>(i) - static_cast<std::size_t>(radius) - 1];
        }
        values[i * stride] = static_cast<uchar>((sum + width / 2) / width);
    }
}

// One box blur over `count` pixels that lie `stride` apart.
void boxBlur(quint64* pixels, int count, qsizetype stride, int radius, std::vector<quint64>& copy) {
    copy.resize(static_cast<std::size_t>(count));
    for (int i = 0; i < count; ++i) {
        copy[static_cast<std::size_t>(i)] = pixels[i * stride];
    }
    constexpr unsigned components = 4;
    constexpr unsigned bits = 16;
    const auto width = static_cast<unsigned>(2 * radius + 1);
    std::array<unsigned, components> sums{};
    const auto pixel = [&](int i) { return copy[static_cast<std::size_t>(std::clamp(i, 0, count - 1))]; };
    const auto component = [](quint64 colour, unsigned index) {
        return static_cast<unsigned>(colour >> (bits * index)) & 0xffffU;
    };
    for (int i = -radius; i <= radius; ++i) {
        for (unsigned c = 0; c < components; ++c) {
            sums.at(c) += component(pixel(i), c);
        }
    }
    for (int i = 0; i < count; ++i) {
        quint64 mean = 0;
        const quint64 entering = pixel(i + radius + 1);
        const quint64 leaving = pixel(i - radius);
        for (unsigned c = 0; c < components; ++c) {
            unsigned& sum = sums[c];
            mean |= static_cast<quint64>((sum + width / 2) / width) << (bits * c);
            sum += component(entering, c);
            sum -= component(leaving, c);
        }
        pixels[i * stride] = mean;
    }
}

} // namespace

void blurColours(QImage& image, double sigma) {
    Q_ASSERT(image.format() == QImage::Format_RGBA64_Premultiplied ||
             image.format() == QImage::Format_RGBX64);
    std::vector<quint64> copy;
    const qsizetype stride = image.bytesPerLine() / static_cast<qsizetype>(sizeof(quint64));
    auto* const pixels = reinterpret_cast<quint64*>(image.bits());
    for (const int radius : boxRadii(sigma)) {
        if (radius <= 0) {
            continue;
        }
        for (int y = 0; y < image.height(); ++y) {
            boxBlur(pixels + y * stride, image.width(), 1, radius, copy);
        }
        for (int x = 0; x < image.width(); ++x) {
            boxBlur(pixels + x, image.height(), stride, radius, copy);
        }
    }
}

void blurAlpha(QImage& image, double sigma) {
    Q_ASSERT(image.format() == QImage::Format_Alpha8);
    std::vector<uchar> copy;
    for (const int radius : boxRadii(sigma)) {
        if (radius <= 0) {
            continue;
        }
        for (int y = 0; y < image.height(); ++y) {
            boxBlur(image.scanLine(y), image.width(), 1, radius, copy);
        }
        for (int x = 0; x < image.width(); ++x) {
            boxBlur(image.bits() + x, image.height(), image.bytesPerLine(), radius, copy);
        }
    }
}

} // namespace amberquill
