#include "views/RoundedShape.h"

#include "data/ContinuousCorners.h"

#include <QPainter>
#include <algorithm>

namespace amberquill {

namespace {

QColor shaded(const QColor& colour, double brightness) {
    const auto component = [brightness](float value) {
        return std::clamp(value + static_cast<float>(brightness), 0.0F, 1.0F);
    };
    return QColor::fromRgbF(component(colour.redF()), component(colour.greenF()), component(colour.blueF()),
                            colour.alphaF());
}

} // namespace

bool RoundedShape::contains(const QPointF& point) const {
    return TextureItem::contains(point) && continuousRoundedRect({{}, size()}, radius_).contains(point);
}

TextureItem::Painted RoundedShape::paintTexture(double devicePixelRatio) {
    const QSize pixels = (size() * devicePixelRatio).toSize().expandedTo({1, 1});
    QImage image(pixels, QImage::Format_ARGB32_Premultiplied);
    image.fill(Qt::transparent);
    QPainter painter(&image);
    painter.setRenderHint(QPainter::Antialiasing);
    const QRectF body({}, QSizeF(pixels));
    const double radius = radius_ * devicePixelRatio;
    painter.fillPath(continuousRoundedRect(body, radius), shaded(fill_, brightness_));
    if (outlineWidth_ > 0 && outline_.alpha() > 0) {
        const double line = outlineWidth_ * devicePixelRatio;
        const QRectF middle = body.adjusted(line / 2, line / 2, -line / 2, -line / 2);
        painter.strokePath(continuousRoundedRect(middle, radius - line / 2),
                           QPen(shaded(outline_, brightness_), line));
    }
    painter.end();
    return {image, QRectF(QPointF(), QSizeF(pixels) / devicePixelRatio)};
}

} // namespace amberquill
