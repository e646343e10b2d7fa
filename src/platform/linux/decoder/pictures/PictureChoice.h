#pragma once

#include <cstddef>
#include <vector>

namespace amberquill::desktop {

// Which of a file's pictures, of these many pixels each way, to show at `edge` pixels: their indices, the
// best first, and no more than are worth a try where the best ones are broken. The exact size is best, then
// larger ones from the smallest, then smaller ones from the largest.
[[nodiscard]] std::vector<std::size_t> bestPictures(const std::vector<int>& edges, int edge);

} // namespace amberquill::desktop
