#include "views/ImageEffects.h"

#include <QRgb>
#include <QRgba64>
#include <algorithm>
#include <cmath>
#include <cstddef>
#include <utility>

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

// Those that touch, united, until none do.
std::vector<QRect> unitedParts(std::vector<QRect> parts) {
    std::vector<QRect> united;
    while (!parts.empty()) {
        QRect part = parts.back();
        parts.pop_back();
        const auto touches = [&part](const QRect& other) {
            return other.adjusted(-1, -1, 1, 1).intersects(part);
        };
        for (auto found = std::find_if(united.begin(), united.end(), touches); found != united.end();
             found = std::find_if(united.begin(), united.end(), touches)) {
            part |= *found;
            united.erase(found);
        }
        united.push_back(part);
    }
    return united;
}

// A mean of colours, each with a weight.
class WeightedMean {
public:
    void add(QRgb colour, double weight) {
        sums_[0] += qRed(colour) * weight;
        sums_[1] += qGreen(colour) * weight;
        sums_[2] += qBlue(colour) * weight;
        weight_ += weight;
    }
    [[nodiscard]] QRgb colour() const {
        const auto level = [this](double sum) { return static_cast<int>(std::lround(sum / weight_)); };
        return qRgb(level(sums_[0]), level(sums_[1]), level(sums_[2]));
    }

private:
    std::array<double, 3> sums_{};
    double weight_ = 0;
};

void fillPart(QImage& image, const QRect& part) {
    const QRect all = image.rect();
    const QRect hole = part & all;
    if (hole.isEmpty() || hole == all) {
        return;
    }
    for (int y = hole.top(); y <= hole.bottom(); ++y) {
        auto* line = reinterpret_cast<QRgb*>(image.scanLine(y));
        for (int x = hole.left(); x <= hole.right(); ++x) {
            WeightedMean mean;
            const auto look = [&](const QPoint& outside, int distance) {
                if (all.contains(outside)) {
                    mean.add(image.pixel(outside), 1.0 / distance);
                }
            };
            look({hole.left() - 1, y}, x - hole.left() + 1);
            look({hole.right() + 1, y}, hole.right() + 1 - x);
            look({x, hole.top() - 1}, y - hole.top() + 1);
            look({x, hole.bottom() + 1}, hole.bottom() + 1 - y);
            line[x] = mean.colour();
        }
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

QImage withBrightness(const QImage& image, double amount) {
    const int shift = static_cast<int>(std::lround(amount * 255));
    if (shift == 0 || image.isNull()) {
        return image;
    }
    QImage result = image.convertToFormat(QImage::Format_ARGB32_Premultiplied);
    for (int y = 0; y < result.height(); ++y) {
        auto* line = reinterpret_cast<QRgb*>(result.scanLine(y));
        for (int x = 0; x < result.width(); ++x) {
            // Premultiplied: a component is shifted by its share of the pixel and stays within its alpha.
            const int alpha = qAlpha(line[x]);
            const int share = shift * alpha / 255;
            line[x] = qRgba(std::clamp(qRed(line[x]) + share, 0, alpha),
                            std::clamp(qGreen(line[x]) + share, 0, alpha),
                            std::clamp(qBlue(line[x]) + share, 0, alpha), alpha);
        }
    }
    return result;
}

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

void fillFromAround(QImage& image, std::vector<QRect> parts) {
    for (const QRect& part : unitedParts(std::move(parts))) {
        fillPart(image, part);
    }
}

} // namespace amberquill
