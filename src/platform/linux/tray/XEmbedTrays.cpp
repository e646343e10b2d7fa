#include "platform/linux/tray/XEmbedTrays.h"

#include "platform/linux/capture/x11/RootImage.h"
#include "platform/linux/x11/XcbReply.h"

#include <QByteArray>
#include <QRect>
#include <algorithm>
#include <cstdint>
#include <optional>
#include <string_view>
#include <utility>

namespace amberquill::desktop {

namespace {

constexpr int mostAncestors = 32;
constexpr int largestEdge = 512;
constexpr std::uint8_t depthWithAlpha = 32;

// A child of the root window.
struct Outermost {
    xcb_window_t window;
    xcb_window_t root;
};

std::optional<Outermost> outermostAround(xcb_connection_t* connection, xcb_window_t window) {
    for (int ancestors = 0; ancestors < mostAncestors; ++ancestors) {
        const XcbReply<xcb_query_tree_reply_t> tree(
            xcb_query_tree_reply(connection, xcb_query_tree(connection, window), nullptr));
        if (!tree || tree->parent == XCB_WINDOW_NONE) {
            return std::nullopt;
        }
        if (tree->parent == tree->root) {
            return Outermost{window, tree->root};
        }
        window = tree->parent;
    }
    return std::nullopt;
}

std::optional<QSize> sizeOf(xcb_connection_t* connection, xcb_window_t window) {
    const XcbReply<xcb_get_geometry_reply_t> geometry(
        xcb_get_geometry_reply(connection, xcb_get_geometry(connection, window), nullptr));
    return geometry ? std::optional(QSize(geometry->width, geometry->height)) : std::nullopt;
}

// The position of `inner` in `outer`; empty: not known, or not all of `inner` is inside.
QRect placeIn(xcb_connection_t* connection, xcb_window_t outer, xcb_window_t inner) {
    const auto translation = xcb_translate_coordinates(connection, inner, outer, 0, 0);
    const auto innerSize = sizeOf(connection, inner);
    const auto outerSize = sizeOf(connection, outer);
    const XcbReply<xcb_translate_coordinates_reply_t> corner(
        xcb_translate_coordinates_reply(connection, translation, nullptr));
    if (!innerSize || !outerSize || !corner) {
        return {};
    }
    const QRect place(QPoint(corner->dst_x, corner->dst_y),
                      innerSize->boundedTo(QSize(largestEdge, largestEdge)));
    return QRect(QPoint(), *outerSize).contains(place) ? place : QRect();
}

const xcb_screen_t* screenOf(const xcb_setup_t& setup, xcb_window_t root) {
    for (auto screens = xcb_setup_roots_iterator(&setup); screens.rem > 0; xcb_screen_next(&screens)) {
        if (screens.data->root == root) {
            return screens.data;
        }
    }
    return nullptr;
}

QImage decoded(xcb_get_image_reply_t& reply, const QSize& size, const RootImage& format) {
    const unsigned char* bytes = xcb_get_image_data(&reply);
    const bool hasAlpha = reply.depth == depthWithAlpha;
    const bool isReadable =
        reply.depth == format.depth || (hasAlpha && format.layout.isQtRgb() && format.padBits == 32);
    const std::size_t bytesPerRow = format.bytesPerRow(size.width());
    const auto length = static_cast<std::size_t>(xcb_get_image_data_length(&reply));
    if (!isReadable || length < bytesPerRow * static_cast<std::size_t>(size.height())) {
        return {};
    }
    QImage image(size, hasAlpha ? QImage::Format_ARGB32_Premultiplied : QImage::Format_RGB32);
    for (int y = 0; y < size.height(); ++y, bytes += bytesPerRow) {
        auto* row = reinterpret_cast<QRgb*>(image.scanLine(y));
        if (hasAlpha) {
            std::copy_n(reinterpret_cast<const QRgb*>(bytes), size.width(), row);
        } else {
            format.layout.unpack(bytes, size.width(), row);
        }
    }
    return image;
}

} // namespace

XEmbedTrays::XEmbedTrays(xcb_connection_t* connection, std::function<void()> came)
    : connection_(connection)
    , came_(std::move(came))
    , atoms_(internAtoms(connection, std::array<std::string_view, 2>{"_NET_SYSTEM_TRAY_S0", "MANAGER"})) {}

bool XEmbedTrays::isThere() const {
    const XcbReply<xcb_get_selection_owner_reply_t> owner(xcb_get_selection_owner_reply(
        connection_, xcb_get_selection_owner(connection_, selection()), nullptr));
    return owner && owner->owner != XCB_WINDOW_NONE;
}

// A new tray sends a message to the clients of the root window, one of which is Qt.
bool XEmbedTrays::nativeEventFilter(const QByteArray& eventType, void* message, qintptr* /*result*/) {
    if (eventType != "xcb_generic_event_t") {
        return false;
    }
    constexpr std::uint8_t ofAnotherProgram = 0x80;
    const auto& event = *static_cast<const xcb_generic_event_t*>(message);
    if ((event.response_type & ~ofAnotherProgram) == XCB_CLIENT_MESSAGE) {
        const auto& told = reinterpret_cast<const xcb_client_message_event_t&>(event);
        if (told.format == 32 && told.type == manager() && told.data.data32[1] == selection()) {
            came_();
        }
    }
    return false;
}

QImage embeddedPicture(xcb_connection_t* connection, xcb_window_t window) {
    const auto outermost = outermostAround(connection, window);
    if (!outermost || outermost->window == window) {
        return {};
    }
    const xcb_setup_t& setup = *xcb_get_setup(connection);
    const xcb_screen_t* screen = screenOf(setup, outermost->root);
    const auto format = screen != nullptr ? RootImage::of(setup, *screen) : std::nullopt;
    const QRect place = placeIn(connection, outermost->window, window);
    if (!format || place.isEmpty()) {
        return {};
    }
    const XcbReply<xcb_get_image_reply_t> reply(xcb_get_image_reply(
        connection,
        xcb_get_image(connection, XCB_IMAGE_FORMAT_Z_PIXMAP, outermost->window,
                      static_cast<std::int16_t>(place.x()), static_cast<std::int16_t>(place.y()),
                      static_cast<std::uint16_t>(place.width()), static_cast<std::uint16_t>(place.height()),
                      ~0U),
        nullptr));
    return reply ? decoded(*reply, place.size(), *format) : QImage();
}

} // namespace amberquill::desktop
