#include "platform/linux/capture/PixelLayout.h"

#include <bit>

namespace amberquill::desktop {

namespace {

constexpr int fewestBits = 4;
constexpr int mostBits = 16;
constexpr int bitsOfLevel = 8;

} // namespace

std::optional<PixelLayout> PixelLayout::of(int bitsPerPixel, std::uint32_t redMask, std::uint32_t greenMask,
                                           std::uint32_t blueMask) {
    if (bitsPerPixel != 16 && bitsPerPixel != 24 && bitsPerPixel != 32) {
        return std::nullopt;
    }
    const auto red = channel(redMask, bitsPerPixel);
    const auto green = channel(greenMask, bitsPerPixel);
    const auto blue = channel(blueMask, bitsPerPixel);
    const bool overlap =
        (redMask & greenMask) != 0 || (greenMask & blueMask) != 0 || (redMask & blueMask) != 0;
    if (!red || !green || !blue || overlap) {
        return std::nullopt;
    }
    PixelLayout layout;
    layout.bytesPerPixel_ = bitsPerPixel / 8;
    layout.isQtRgb_ = bitsPerPixel == 32 && redMask == 0xFF0000 && greenMask == 0xFF00 && blueMask == 0xFF &&
                      std::endian::native == std::endian::little;
    layout.red_ = *red;
    layout.green_ = *green;
    layout.blue_ = *blue;
    return layout;
}

std::optional<PixelLayout::Channel> PixelLayout::channel(std::uint32_t mask, int bitsPerPixel) {
    const int bits = std::popcount(mask);
    const int lowest = std::countr_zero(mask);
    const bool isInOnePiece = mask != 0 && std::countl_zero(mask) + bits + lowest == 32;
    if (!isInOnePiece || bits < fewestBits || bits > mostBits || lowest + bits > bitsPerPixel) {
        return std::nullopt;
    }
    // Channels with more bits than a level lose their low bits.
    const int counting = bits < bitsOfLevel ? bits : bitsOfLevel;
    Channel channel{};
    channel.shift = static_cast<unsigned>(lowest + bits - counting);
    channel.mask = (1U << static_cast<unsigned>(counting)) - 1;
    for (std::uint32_t value = 0; value <= channel.mask; ++value) {
        channel.level[value] = static_cast<std::uint8_t>((value * 255 + channel.mask / 2) / channel.mask);
    }
    return channel;
}

QRgb PixelLayout::colour(std::uint32_t pixel) const {
    const auto level = [pixel](const Channel& channel) {
        return static_cast<QRgb>(channel.level[(pixel >> channel.shift) & channel.mask]);
    };
    return 0xFF000000U | level(red_) << 16U | level(green_) << 8U | level(blue_);
}

void PixelLayout::unpack(const unsigned char* row, int count, QRgb* out) const {
    const auto byte = [&row](int index) { return static_cast<std::uint32_t>(row[index]); };
    for (int i = 0; i < count; ++i, row += bytesPerPixel_) {
        std::uint32_t pixel = byte(0) | byte(1) << 8U;
        if (bytesPerPixel_ > 2) {
            pixel |= byte(2) << 16U;
        }
        if (bytesPerPixel_ > 3) {
            pixel |= byte(3) << 24U;
        }
        out[i] = colour(pixel);
    }
}

} // namespace amberquill::desktop
