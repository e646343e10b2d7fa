#pragma once

#include <QRgb>
#include <array>
#include <cstdint>
#include <optional>

namespace amberquill::desktop {

// A server's pixel format without a palette: 16, 24 or 32 bits per pixel, the lowest byte first, and the bits
// of each colour channel.
class PixelLayout {
public:
    // None: an unsupported layout.
    static std::optional<PixelLayout> of(int bitsPerPixel, std::uint32_t redMask, std::uint32_t greenMask,
                                         std::uint32_t blueMask);

    [[nodiscard]] int bytesPerPixel() const { return bytesPerPixel_; }

    // Whether a row of such pixels, if aligned to four bytes, can be used as QRgb except for the highest
    // byte.
    [[nodiscard]] bool isQtRgb() const { return isQtRgb_; }

    // Converts `count` pixels to QRgb without alpha.
    void unpack(const unsigned char* row, int count, QRgb* out) const;

private:
    struct Channel {
        unsigned shift = 0;                    // of the lowest bit used
        std::uint32_t mask = 0;                // after shifting
        std::array<std::uint8_t, 256> level{}; // for each value after masking
    };

    static std::optional<Channel> channel(std::uint32_t mask, int bitsPerPixel);
    [[nodiscard]] QRgb colour(std::uint32_t pixel) const;

    int bytesPerPixel_ = 0;
    bool isQtRgb_ = false;
    Channel red_{};
    Channel green_{};
    Channel blue_{};
};

} // namespace amberquill::desktop
