#include "platform/linux/decoder/pictures/PictureChoice.h"

#include <algorithm>
#include <numeric>
#include <utility>

namespace amberquill::desktop {

namespace {

constexpr std::size_t maximumTried = 3;

} // namespace

std::vector<std::size_t> bestPictures(const std::vector<int>& edges, int edge) {
    const auto worth = [&](std::size_t i) {
        return edges[i] >= edge ? std::pair(0, edges[i]) : std::pair(1, -edges[i]);
    };
    std::vector<std::size_t> order(edges.size());
    std::iota(order.begin(), order.end(), std::size_t{0});
    std::stable_sort(order.begin(), order.end(),
                     [&worth](std::size_t one, std::size_t other) { return worth(one) < worth(other); });
    order.resize(std::min(order.size(), maximumTried));
    return order;
}

} // namespace amberquill::desktop
