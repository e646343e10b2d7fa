#include "platform/linux/capture/x11/RootImage.h"

namespace amberquill::desktop {

namespace {

const xcb_visualtype_t* rootVisual(const xcb_screen_t& screen) {
    for (auto depths = xcb_screen_allowed_depths_iterator(&screen); depths.rem > 0; xcb_depth_next(&depths)) {
        for (auto visuals = xcb_depth_visuals_iterator(depths.data); visuals.rem > 0;
             xcb_visualtype_next(&visuals)) {
            if (visuals.data->visual_id == screen.root_visual) {
                return visuals.data;
            }
        }
    }
    return nullptr;
}

const xcb_format_t* formatOf(const xcb_setup_t& setup, int depth) {
    for (auto stored = xcb_setup_pixmap_formats_iterator(&setup); stored.rem > 0; xcb_format_next(&stored)) {
        if (stored.data->depth == depth) {
            return stored.data;
        }
    }
    return nullptr;
}

} // namespace

std::optional<RootImage> RootImage::of(const xcb_setup_t& setup, const xcb_screen_t& screen) {
    const auto* visual = rootVisual(screen);
    const auto* format = formatOf(setup, screen.root_depth);
    if (visual == nullptr || format == nullptr || setup.image_byte_order != XCB_IMAGE_ORDER_LSB_FIRST) {
        return std::nullopt;
    }
    const bool isTrueColour =
        visual->_class == XCB_VISUAL_CLASS_TRUE_COLOR || visual->_class == XCB_VISUAL_CLASS_DIRECT_COLOR;
    const bool isPadded =
        format->scanline_pad == 8 || format->scanline_pad == 16 || format->scanline_pad == 32;
    const auto layout =
        PixelLayout::of(format->bits_per_pixel, visual->red_mask, visual->green_mask, visual->blue_mask);
    if (!isTrueColour || !isPadded || !layout) {
        return std::nullopt;
    }
    return RootImage{*layout, format->bits_per_pixel, format->scanline_pad, screen.root_depth};
}

std::size_t RootImage::bytesPerRow(int width) const {
    const auto pad = static_cast<std::size_t>(padBits);
    const auto bits = static_cast<std::size_t>(width) * static_cast<std::size_t>(bitsPerPixel);
    return (bits + pad - 1) / pad * pad / 8;
}

} // namespace amberquill::desktop
