#pragma once

#include "platform/linux/capture/PixelLayout.h"

#include <cstddef>
#include <optional>
#include <xcb/xcb.h>

namespace amberquill::desktop {

// The pixel format of a screen's root window.
struct RootImage {
    PixelLayout layout;
    int bitsPerPixel;
    int padBits; // rows are padded to a multiple of this
    int depth;

    // None: the screen has a palette, or a pixel format that is not supported.
    static std::optional<RootImage> of(const xcb_setup_t& setup, const xcb_screen_t& screen);

    [[nodiscard]] std::size_t bytesPerRow(int width) const;
};

} // namespace amberquill::desktop
