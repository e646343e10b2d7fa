#include "platform/linux/decoder/pictures/RasterPicture.h"

#include <gtest/gtest.h>

using namespace amberquill::desktop;

namespace {

using Order = std::vector<std::size_t>;

Order best(const std::vector<int>& edges, int edge) {
    std::vector<PictureSize> sizes;
    for (const int one : edges) {
        sizes.push_back({.edge = one});
    }
    return bestPictures(sizes, edge);
}

} // namespace

TEST(PictureChoice, TheExactSizeIsBestThenTheNextLargerThenTheLargest) {
    EXPECT_EQ(best({32, 64, 128}, 64), (Order{1, 2, 0}));
    EXPECT_EQ(best({16, 256, 32, 128}, 100), (Order{3, 1, 2}));
    EXPECT_EQ(best({16, 48, 32}, 100), (Order{1, 2, 0}));
}

TEST(PictureChoice, TheFirstOfEqualOnesIsBest) {
    EXPECT_EQ(best({48, 48}, 48), (Order{0, 1}));
    EXPECT_EQ(best({48, 48}, 96), (Order{0, 1}));
}

TEST(PictureChoice, ThreeAreWorthATry) {
    EXPECT_EQ(best({1, 2, 3, 4, 5}, 1), (Order{0, 1, 2}));
    EXPECT_EQ(best({}, 1), Order{});
}

TEST(PictureChoice, OfTheSameSizeTheOneOfMoreColoursIsBest) {
    const PictureSize few{.edge = 32, .depth = 4};
    const PictureSize many{.edge = 32, .depth = 32};
    EXPECT_EQ(bestPictures({few, many}, 32), (Order{1, 0}));
    EXPECT_EQ(bestPictures({few, many}, 96), (Order{1, 0}));
    EXPECT_EQ(bestPictures({few, {.edge = 16, .depth = 32}}, 32), (Order{0, 1}));
}
