#include "platform/linux/decoder/pictures/SvgDrawing.h"

#include "platform/linux/decoder/pictures/ImageFitting.h"
#include "platform/linux/decoder/pictures/SvgInspection.h"

#include <QLoggingCategory>
#include <QPainter>
#include <QSvgRenderer>
#include <algorithm>
#include <cmath>

namespace amberquill::desktop {

namespace {

Q_LOGGING_CATEGORY(log, "amberquill.icons", QtCriticalMsg)

// The proportions of a drawing's box as whole numbers; its own numbers may be tiny or huge.
QSize proportions(QSizeF box) {
    constexpr double large = 10'000.0;
    const double scale = large / std::max(box.width(), box.height());
    return {std::max(static_cast<int>(std::lround(box.width() * scale)), 1),
            std::max(static_cast<int>(std::lround(box.height() * scale)), 1)};
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

QImage drawnSvg(const QByteArray& text, int edge) {
    const auto verdict = inspectSvg({text.constData(), static_cast<std::size_t>(text.size())});
    if (verdict != SvgVerdict::Harmless) {
        qCDebug(log) << "SVG refused, reason" << static_cast<int>(verdict);
        return {};
    }
    QSvgRenderer renderer;
    renderer.setFramesPerSecond(0); // an animated one would start a timer on this thread
    if (!renderer.load(text)) {
        return {};
    }
    const auto box = renderer.viewBoxF().size();
    if (!(box.width() > 0.0) || !(box.height() > 0.0) || !std::isfinite(box.width()) ||
        !std::isfinite(box.height())) {
        return {};
    }
    QImage image(edge, edge, QImage::Format_ARGB32_Premultiplied);
    if (image.isNull()) {
        return {};
    }
    image.fill(Qt::transparent);
    const auto size = fittedSize(proportions(box), edge);
    QPainter painter(&image);
    const QPoint corner((edge - size.width()) / 2, (edge - size.height()) / 2);
    renderer.render(&painter, QRect(corner, size));
    painter.end();
    return isBlank(image) ? QImage() : image;
}

} // namespace amberquill::desktop
