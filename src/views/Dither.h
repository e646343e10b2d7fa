#pragma once

#include <array>

namespace amberquill {

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

} // namespace amberquill
