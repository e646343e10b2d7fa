#include "platform/linux/decoder/pictures/PictureChoice.h"

#include <algorithm>
#include <numeric>
#include <tuple>

namespace amberquill::desktop {

namespace {

constexpr std::size_t maximumTried = 3;

} // namespace

std::vector<std::size_t> bestPictures(const std::vector<PictureSize>& pictures, int edge) {
    const auto worth = [&](std::size_t i) {
        const auto& [size, depth] = pictures[i];
        return size >= edge ? std::tuple(0, size, -depth) : std::tuple(1, -size, -depth);
    };
    std::vector<std::size_t> order(pictures.size());
    std::iota(order.begin(), order.end(), std::size_t{0});
    std::stable_sort(order.begin(), order.end(),
                     [&worth](std::size_t one, std::size_t other) { return worth(one) < worth(other); });
    order.resize(std::min(order.size(), maximumTried));
    return order;
}

} // namespace amberquill::desktop
