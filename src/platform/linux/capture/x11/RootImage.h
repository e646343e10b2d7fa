#pragma once

#include "platform/linux/capture/PixelLayout.h"

#include <cstddef>
#include <optional>
#include <xcb/xcb.h>

namespace amberquill::desktop {

// How an X server hands out the pixels of a screen's root window.
struct RootImage {
    PixelLayout layout;
    int bitsPerPixel;
    int padBits; // what a row is filled up to
    int depth;

    // Of a screen whose colours stand in the pixels themselves. None: it has a palette, or stores pixels in a
    // way that cannot be read.
    static std::optional<RootImage> of(const xcb_setup_t& setup, const xcb_screen_t& screen);

    [[nodiscard]] std::size_t bytesPerRow(int width) const;
};

} // namespace amberquill::desktop
