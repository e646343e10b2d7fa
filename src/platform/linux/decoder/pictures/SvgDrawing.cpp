#include "platform/linux/decoder/pictures/SvgDrawing.h"

#include "platform/linux/decoder/pictures/Owned.h"

#include <QPoint>
#include <QSizeF>
#include <algorithm>
#include <cairo.h>
#include <cmath>
#include <librsvg/rsvg.h>

namespace amberquill::desktop {

namespace {

constexpr double pixelsPerInch = 96.0; // as CSS has it

struct DestroyCairo {
    void operator()(cairo_t* painter) const { ::cairo_destroy(painter); }
    void operator()(cairo_surface_t* surface) const { ::cairo_surface_destroy(surface); }
};

// The size the document asks for, in pixels; else that of its view box, else of what it draws. Empty or not
// finite where it makes no sense.
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

QImage drawnSvg(const QByteArray& document, int edge) {
    const Owned<RsvgHandle> drawing(::rsvg_handle_new_from_data(
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
