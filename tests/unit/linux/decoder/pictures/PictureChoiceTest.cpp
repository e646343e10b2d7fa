#include "platform/linux/decoder/pictures/PictureChoice.h"

#include <gtest/gtest.h>

using namespace amberquill::desktop;

using Order = std::vector<std::size_t>;

TEST(PictureChoice, TheExactSizeIsBestThenTheNextLargerThenTheLargest) {
    EXPECT_EQ(bestPictures({32, 64, 128}, 64), (Order{1, 2, 0}));
    EXPECT_EQ(bestPictures({16, 256, 32, 128}, 100), (Order{3, 1, 2}));
    EXPECT_EQ(bestPictures({16, 48, 32}, 100), (Order{1, 2, 0}));
}

TEST(PictureChoice, TheFirstOfEqualOnesIsBest) {
    EXPECT_EQ(bestPictures({48, 48}, 48), (Order{0, 1}));
    EXPECT_EQ(bestPictures({48, 48}, 96), (Order{0, 1}));
}

TEST(PictureChoice, ThreeAreWorthATry) {
    EXPECT_EQ(bestPictures({1, 2, 3, 4, 5}, 1), (Order{0, 1, 2}));
    EXPECT_EQ(bestPictures({}, 1), Order{});
}
