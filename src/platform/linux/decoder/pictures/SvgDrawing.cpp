#include "platform/linux/decoder/pictures/SvgDrawing.h"

#include <QPoint>
#include <QSizeF>
#include <algorithm>
#include <cairo.h>
#include <cmath>
#include <gio/gio.h>
#include <librsvg/rsvg.h>
#include <memory>
#include <string_view>

namespace amberquill::desktop {

using namespace std::string_view_literals;

namespace {

struct UnrefObject {
    void operator()(gpointer object) const { ::g_object_unref(object); }
};

// A GObject that this code owns a reference to.
template<typename T>
using ObjectPointer = std::unique_ptr<T, UnrefObject>;

constexpr auto endsOfName = " \t\r\n/>"sv;
constexpr std::size_t longestPrefix = 64;

// Whether `before`, the text before an element's name, ends with `<`, or with `<` and a namespace prefix.
bool beginsTag(std::string_view before) {
    if (!before.ends_with(':')) {
        return before.ends_with('<');
    }
    before = before.substr(before.size() - std::min(before.size(), longestPrefix));
    const auto mark = before.rfind('<');
    return mark != std::string_view::npos && before.find_first_of(endsOfName, mark) == std::string_view::npos;
}

constexpr double pixelsPerInch = 96.0; // as in CSS

struct DestroyCairo {
    void operator()(cairo_t* painter) const { ::cairo_destroy(painter); }
    void operator()(cairo_surface_t* surface) const { ::cairo_surface_destroy(surface); }
};

// The document's stated size in pixels, else the size of its view box, else of its drawing. May be empty or
// not finite.
QSizeF sizeOf(RsvgHandle* drawing) {
    double width = 0.0;
    double height = 0.0;
    if (::rsvg_handle_get_intrinsic_size_in_pixels(drawing, &width, &height) != FALSE) {
        return {width, height};
    }
    RsvgRectangle box = {};
    gboolean hasBox = FALSE;
    ::rsvg_handle_get_intrinsic_dimensions(drawing, nullptr, nullptr, nullptr, nullptr, &hasBox, &box);
    if (hasBox == FALSE) {
        constexpr RsvgRectangle any{.x = 0.0, .y = 0.0, .width = 1.0, .height = 1.0};
        ::rsvg_handle_get_geometry_for_layer(drawing, nullptr, &any, &box, nullptr, nullptr);
    }
    return {box.width, box.height};
}

bool isBlank(const QImage& image) {
    for (int y = 0; y < image.height(); ++y) {
        const auto* const line = reinterpret_cast<const QRgb*>(image.constScanLine(y));
        if (std::any_of(line, line + image.width(), [](QRgb pixel) { return qAlpha(pixel) != 0; })) {
            return false;
        }
    }
    return true;
}

} // namespace

std::optional<QByteArray> gunzipped(const QByteArray& bytes, qsizetype limit) {
    const ObjectPointer<GInputStream> compressed(
        ::g_memory_input_stream_new_from_data(bytes.constData(), bytes.size(), nullptr));
    const ObjectPointer<GZlibDecompressor> decompressor(
        ::g_zlib_decompressor_new(G_ZLIB_COMPRESSOR_FORMAT_GZIP));
    const ObjectPointer<GInputStream> stream(
        ::g_converter_input_stream_new(compressed.get(), G_CONVERTER(decompressor.get())));
    QByteArray text(limit + 1, Qt::Uninitialized);
    gsize size = 0;
    if (::g_input_stream_read_all(stream.get(), text.data(), static_cast<gsize>(text.size()), &size, nullptr,
                                  nullptr) == FALSE ||
        static_cast<qsizetype>(size) > limit) {
        return std::nullopt;
    }
    text.truncate(static_cast<qsizetype>(size));
    return text;
}

bool mayHoldText(const QByteArray& document) {
    QByteArray narrow;
    if (document.contains('\0')) { // UTF-16 or UTF-32
        narrow = document;
        narrow.removeIf([](char byte) { return byte == '\0'; });
    }
    const auto& bytes = narrow.isEmpty() ? document : narrow;
    const std::string_view text(bytes.constData(), static_cast<std::size_t>(bytes.size()));
    constexpr auto name = "text"sv;
    for (auto at = text.find(name); at != std::string_view::npos; at = text.find(name, at + 1)) {
        const auto after = text.substr(at + name.size(), 1);
        if (!after.empty() && endsOfName.find(after.front()) != std::string_view::npos &&
            beginsTag(text.substr(0, at))) {
            return true;
        }
    }
    return false;
}

QImage drawnSvg(const QByteArray& document, int edge) {
    const ObjectPointer<RsvgHandle> drawing(::rsvg_handle_new_from_data(
        reinterpret_cast<const guint8*>(document.constData()), static_cast<gsize>(document.size()), nullptr));
    if (!drawing) {
        return {};
    }
    ::rsvg_handle_set_dpi(drawing.get(), pixelsPerInch);
    const auto size = sizeOf(drawing.get());
    const double scale = edge / std::max(size.width(), size.height());
    if (!(size.width() > 0.0) || !(size.height() > 0.0) || !std::isfinite(scale)) {
        return {};
    }
    QImage image(edge, edge, QImage::Format_ARGB32_Premultiplied);
    if (image.isNull()) {
        return {};
    }
    image.fill(Qt::transparent);
    const std::unique_ptr<cairo_surface_t, DestroyCairo> surface(::cairo_image_surface_create_for_data(
        image.bits(), CAIRO_FORMAT_ARGB32, edge, edge, static_cast<int>(image.bytesPerLine())));
    const std::unique_ptr<cairo_t, DestroyCairo> painter(::cairo_create(surface.get()));
    const auto pixels = [&](double length) {
        return std::clamp(static_cast<int>(std::ceil(length * scale)), 1, edge);
    };
    const int width = pixels(size.width());
    const int height = pixels(size.height());
    const QPoint corner((edge - width) / 2, (edge - height) / 2);
    ::cairo_translate(painter.get(), corner.x(), corner.y());
    ::cairo_rectangle(painter.get(), 0.0, 0.0, width, height);
    ::cairo_clip(painter.get());
    ::cairo_scale(painter.get(), scale, scale);
    const RsvgRectangle area{.x = 0.0, .y = 0.0, .width = size.width(), .height = size.height()};
    const bool isDrawn = ::rsvg_handle_render_document(drawing.get(), painter.get(), &area, nullptr) != FALSE;
    ::cairo_surface_flush(surface.get());
    return isDrawn && !isBlank(image) ? image : QImage();
}

} // namespace amberquill::desktop
