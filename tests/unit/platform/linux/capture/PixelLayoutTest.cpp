#include "platform/linux/capture/PixelLayout.h"

#include <gtest/gtest.h>
#include <vector>

using namespace amberquill::desktop;

namespace {

// Unpacks one pixel with these bytes.
QRgb unpacked(const std::optional<PixelLayout>& layout, const std::vector<unsigned char>& bytes) {
    QRgb colour = 0;
    EXPECT_TRUE(layout.has_value());
    EXPECT_EQ(layout->bytesPerPixel(), static_cast<int>(bytes.size()));
    layout->unpack(bytes.data(), 1, &colour);
    return colour;
}

} // namespace

TEST(PixelLayout, TheUsualLayoutIsThatOfQImage) {
    const auto layout = PixelLayout::of(32, 0xFF0000, 0xFF00, 0xFF);
    EXPECT_TRUE(layout->isQtRgb());
    EXPECT_EQ(unpacked(layout, {0x33, 0x22, 0x11, 0x77}), 0xFF112233);
}

TEST(PixelLayout, ColoursMayBeInReverseOrder) {
    const auto layout = PixelLayout::of(32, 0xFF, 0xFF00, 0xFF0000);
    EXPECT_FALSE(layout->isQtRgb());
    EXPECT_EQ(unpacked(layout, {0x33, 0x22, 0x11, 0x77}), 0xFF332211);
}

TEST(PixelLayout, APixelMayHaveThreeBytes) {
    const auto layout = PixelLayout::of(24, 0xFF0000, 0xFF00, 0xFF);
    EXPECT_FALSE(layout->isQtRgb());
    EXPECT_EQ(unpacked(layout, {0x33, 0x22, 0x11}), 0xFF112233);
}

TEST(PixelLayout, CoarseColoursReachFromBlackToWhite) {
    const auto layout = PixelLayout::of(16, 0xF800, 0x07E0, 0x001F);
    EXPECT_EQ(unpacked(layout, {0x00, 0x00}), 0xFF000000);
    EXPECT_EQ(unpacked(layout, {0xFF, 0xFF}), 0xFFFFFFFF);
    EXPECT_EQ(unpacked(layout, {0x00, 0xF8}), 0xFFFF0000);
    EXPECT_EQ(unpacked(layout, {0x10, 0x84}), 0xFF848284) << "sixteen of 31, 32 of 63";
}

TEST(PixelLayout, MoreThanEightBitsAreCutToTheUpperEight) {
    const auto layout = PixelLayout::of(32, 0x3FF00000, 0x000FFC00, 0x000003FF);
    const std::uint32_t pixel = (0x203U << 20U) | (0x3FFU << 10U) | 0x004U;
    EXPECT_EQ(unpacked(layout,
                       {static_cast<unsigned char>(pixel), static_cast<unsigned char>(pixel >> 8U),
                        static_cast<unsigned char>(pixel >> 16U), static_cast<unsigned char>(pixel >> 24U)}),
              0xFF80FF01);
}

TEST(PixelLayout, ARowIsUnpackedPixelByPixel) {
    const auto layout = PixelLayout::of(16, 0xF800, 0x07E0, 0x001F);
    const std::vector<unsigned char> row{0x00, 0xF8, 0xE0, 0x07, 0x1F, 0x00};
    std::vector<QRgb> colours(3);
    layout->unpack(row.data(), 3, colours.data());
    EXPECT_EQ(colours, std::vector<QRgb>({0xFFFF0000, 0xFF00FF00, 0xFF0000FF}));
}

TEST(PixelLayout, AnInvalidLayoutIsRefused) {
    EXPECT_FALSE(PixelLayout::of(8, 0xE0, 0x1C, 0x03)) << "a palette";
    EXPECT_FALSE(PixelLayout::of(0, 0xFF0000, 0xFF00, 0xFF));
    EXPECT_FALSE(PixelLayout::of(64, 0xFF0000, 0xFF00, 0xFF));
    EXPECT_FALSE(PixelLayout::of(32, 0, 0, 0));
    EXPECT_FALSE(PixelLayout::of(32, 0xFF0000, 0xFF00, 0));
    EXPECT_FALSE(PixelLayout::of(32, 0xF0F000, 0x0F00, 0xFF)) << "in two pieces";
    EXPECT_FALSE(PixelLayout::of(32, 0xFF0000, 0xFF00, 0xFF00)) << "the same bits twice";
    EXPECT_FALSE(PixelLayout::of(16, 0xFF0000, 0xFF00, 0xFF)) << "more bits than there are";
    EXPECT_FALSE(PixelLayout::of(32, 0xFFFFFC00, 0x3F0, 0xF)) << "too fine";
}
