#pragma once

#include <cstddef>
#include <vector>

namespace amberquill::desktop {

// One of a file's pictures.
struct PictureSize {
    int edge = 0;  // pixels each way
    int depth = 0; // bits a pixel
};

// Which of a file's pictures to show at `edge` pixels: their indices, the best first, and no more than are
// worth a try where the best ones are broken. The exact size is best, then larger ones from the smallest,
// then smaller ones from the largest; of the same size, the one of more colours.
[[nodiscard]] std::vector<std::size_t> bestPictures(const std::vector<PictureSize>& pictures, int edge);

} // namespace amberquill::desktop
