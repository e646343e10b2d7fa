#pragma once

#include <QRgb>
#include <array>
#include <cstdint>
#include <optional>

namespace amberquill::desktop {

// How a server stores a pixel with a colour of its own: 16, 24 or 32 bits, the lowest byte first, and which
// of them are whose.
class PixelLayout {
public:
    // None: not a layout that can be read.
    static std::optional<PixelLayout> of(int bitsPerPixel, std::uint32_t redMask, std::uint32_t greenMask,
                                         std::uint32_t blueMask);

    [[nodiscard]] int bytesPerPixel() const { return bytesPerPixel_; }

    // Whether a row of such pixels, where it is aligned to four bytes, is one of Qt's already but for what
    // stands in the highest byte.
    [[nodiscard]] bool isQtRgb() const { return isQtRgb_; }

    // `count` pixels, as Qt has them, without alpha.
    void unpack(const unsigned char* row, int count, QRgb* out) const;

private:
    struct Channel {
        unsigned shift = 0;                    // of its lowest bit that counts
        std::uint32_t mask = 0;                // after shifting
        std::array<std::uint8_t, 256> level{}; // of what is left then
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
