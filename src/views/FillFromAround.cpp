#include "views/FillFromAround.h"

#include <algorithm>
#include <array>
#include <cmath>

namespace amberquill {

namespace {

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

void fillFromAround(QImage& image, std::vector<QRect> parts) {
    for (const QRect& part : unitedParts(std::move(parts))) {
        fillPart(image, part);
    }
}

} // namespace amberquill
