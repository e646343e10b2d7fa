#include "platform/linux/capture/wayland/StoredFrame.h"

#include <gtest/gtest.h>
#include <limits>
#include <vector>
#include <wayland-client-protocol.h>

using namespace amberquill::desktop;

namespace {

constexpr std::uint32_t most = std::numeric_limits<std::uint32_t>::max();

// A frame of 3 × 2 pixels of different colours. Its rows are longer than their pixels.
constexpr std::uint32_t stride = 16;

std::vector<unsigned char> memoryOf(const std::vector<QRgb>& pixels) {
    std::vector<unsigned char> memory(std::size_t{2} * stride, 0xEE);
    for (std::size_t i = 0; i < pixels.size(); ++i) {
        const std::size_t at = i / 3 * stride + i % 3 * 4;
        for (unsigned byte = 0; byte < 4; ++byte) {
            memory[at + byte] = static_cast<unsigned char>(pixels[i] >> 8 * byte);
        }
    }
    return memory;
}

// The last digits of the image's colours, row by row.
QString seen(const QImage& image) {
    QString rows;
    for (int y = 0; y < image.height(); ++y) {
        for (int x = 0; x < image.width(); ++x) {
            EXPECT_EQ(qAlpha(image.pixel(x, y)), 255);
            rows += QString::number(image.pixel(x, y) & 0xFU);
        }
        rows += QLatin1Char(' ');
    }
    return rows.trimmed();
}

QString upright(std::int32_t transform, bool bottomUp) {
    const auto frame = StoredFrame::of(WL_SHM_FORMAT_XRGB8888, 3, 2, stride);
    const auto memory = memoryOf({1, 2, 3, 4, 5, 6});
    return seen(uprightPicture(*frame, Orientation::of(transform, bottomUp), memory.data(), 1, true).whole);
}

QRgb colourIn(std::uint32_t format, const std::vector<unsigned char>& pixel) {
    const auto frame = StoredFrame::of(format, 1, 1, static_cast<std::uint32_t>(pixel.size()));
    return uprightPicture(*frame, {}, pixel.data(), 1, true).whole.pixel(0, 0);
}

} // namespace

TEST(StoredFrame, AnOutputsTransformIsUndone) {
    EXPECT_EQ(upright(WL_OUTPUT_TRANSFORM_NORMAL, false), QStringLiteral("123 456"));
    EXPECT_EQ(upright(WL_OUTPUT_TRANSFORM_90, false), QStringLiteral("41 52 63"));
    EXPECT_EQ(upright(WL_OUTPUT_TRANSFORM_180, false), QStringLiteral("654 321"));
    EXPECT_EQ(upright(WL_OUTPUT_TRANSFORM_270, false), QStringLiteral("36 25 14"));
    EXPECT_EQ(upright(WL_OUTPUT_TRANSFORM_FLIPPED, false), QStringLiteral("321 654"));
    EXPECT_EQ(upright(WL_OUTPUT_TRANSFORM_FLIPPED_90, false), QStringLiteral("14 25 36"));
    EXPECT_EQ(upright(WL_OUTPUT_TRANSFORM_FLIPPED_180, false), QStringLiteral("456 123"));
    EXPECT_EQ(upright(WL_OUTPUT_TRANSFORM_FLIPPED_270, false), QStringLiteral("63 52 41"));
}

TEST(StoredFrame, BottomUpRowsAreFlippedFirst) {
    EXPECT_EQ(upright(WL_OUTPUT_TRANSFORM_NORMAL, true), QStringLiteral("456 123"));
    EXPECT_EQ(upright(WL_OUTPUT_TRANSFORM_90, true), QStringLiteral("14 25 36"));
}

TEST(StoredFrame, AnUnknownTransformIsIgnored) {
    EXPECT_EQ(upright(8, false), QStringLiteral("123 456"));
    EXPECT_EQ(upright(-1, false), QStringLiteral("123 456"));
}

TEST(StoredFrame, ARotatedImageHasItsColumnsAsRowsInOrder) {
    constexpr int width = 37;
    const auto frame = StoredFrame::of(WL_SHM_FORMAT_XRGB8888, width, 2, width * 4);
    std::vector<QRgb> pixels(std::size_t{width} * 2);
    for (std::size_t i = 0; i < pixels.size(); ++i) {
        pixels[i] = static_cast<QRgb>(i);
    }
    const auto* memory = reinterpret_cast<const unsigned char*>(pixels.data());
    for (const bool fromRight : {false, true}) {
        const Orientation orientation{.exchanged = true, .fromRight = fromRight};
        const QImage whole = uprightPicture(*frame, orientation, memory, 1, true).whole;
        ASSERT_EQ(whole.size(), QSize(2, width));
        for (int y = 0; y < width; ++y) {
            const auto column = static_cast<QRgb>(fromRight ? width - 1 - y : y);
            EXPECT_EQ(whole.pixel(0, y), 0xFF000000U | column);
            EXPECT_EQ(whole.pixel(1, y), 0xFF000000U | (column + width));
        }
    }
}

TEST(StoredFrame, EachFormatHasItsColours) {
    EXPECT_EQ(colourIn(WL_SHM_FORMAT_ARGB8888, {3, 2, 1, 0}), qRgb(1, 2, 3));
    EXPECT_EQ(colourIn(WL_SHM_FORMAT_XBGR8888, {1, 2, 3, 9}), qRgb(1, 2, 3));
    EXPECT_EQ(colourIn(WL_SHM_FORMAT_RGBX8888, {9, 3, 2, 1}), qRgb(1, 2, 3));
    EXPECT_EQ(colourIn(WL_SHM_FORMAT_BGRA8888, {9, 1, 2, 3}), qRgb(1, 2, 3));
    EXPECT_EQ(colourIn(WL_SHM_FORMAT_BGR888, {1, 2, 3}), qRgb(1, 2, 3));
    EXPECT_EQ(colourIn(WL_SHM_FORMAT_RGB888, {3, 2, 1}), qRgb(1, 2, 3));
    EXPECT_EQ(colourIn(WL_SHM_FORMAT_RGB565, {0x1F, 0x00}), qRgb(0, 0, 255));
    EXPECT_EQ(colourIn(WL_SHM_FORMAT_XRGB2101010, {0xFF, 0x03, 0x00, 0x00}), qRgb(0, 0, 255));
    EXPECT_EQ(colourIn(WL_SHM_FORMAT_XBGR2101010, {0xFF, 0x03, 0x00, 0x00}), qRgb(255, 0, 0));
}

TEST(StoredFrame, EachBlockBecomesItsMean) {
    const auto frame = StoredFrame::of(WL_SHM_FORMAT_XRGB8888, 3, 2, stride);
    const auto memory = memoryOf({2, 4, 9, 6, 8, 1});
    const auto picture = uprightPicture(*frame, {}, memory.data(), 2, false);
    EXPECT_EQ(seen(picture.shrunk), QStringLiteral("55"));
    EXPECT_TRUE(picture.whole.isNull());
}

TEST(StoredFrame, InconsistentSizesAreRefused) {
    constexpr auto format = WL_SHM_FORMAT_XRGB8888;
    EXPECT_TRUE(StoredFrame::of(format, 1920, 1080, 7680));
    EXPECT_FALSE(StoredFrame::of(format, 1920, 1080, 7679)) << "rows overlap";
    EXPECT_FALSE(StoredFrame::of(format, 0, 1080, 7680));
    EXPECT_FALSE(StoredFrame::of(format, 1920, 0, 7680));
    EXPECT_FALSE(StoredFrame::of(format, 16385, 16, 16385 * 4));
    EXPECT_FALSE(StoredFrame::of(format, 16, 16385, 64));
    EXPECT_FALSE(StoredFrame::of(format, 16384, 16384, 65536)) << "a gigabyte";
    EXPECT_FALSE(StoredFrame::of(format, 16, 16, most));
    EXPECT_FALSE(StoredFrame::of(format, most, most, most));
    EXPECT_FALSE(StoredFrame::of(format, most / 4 + 2, 1, 4)) << "more than fits";
    EXPECT_FALSE(StoredFrame::of(WL_SHM_FORMAT_C8, 16, 16, 64));
    EXPECT_FALSE(StoredFrame::of(most, 16, 16, 64));
}
