#include "views/FrostedSlab.h"

#include "data/ContinuousCorners.h"
#include "data/IconCache.h"
#include "views/BackgroundLayer.h"
#include "views/ImageEffects.h"
#include "views/Theme.h"

#include <QPainter>
#include <QPainterPath>
#include <QRgba64>
#include <QTransform>
#include <cmath>

namespace amberquill {

namespace {

// In points. The radius of a blur is twice the standard deviation of its Gaussian.
constexpr double frostRadius = 60;
constexpr double slabShadowRadius = 30;
constexpr double slabShadowDrop = 10;

// The least opacity of the slab where the wash behind it is translucent, so that no outline shows through.
constexpr double leastOpacity = 0.98;

// A blurred image has no detail, so it is computed this many times smaller.
constexpr int coarseness = 4;

// Raises the opacity of every pixel to the least one.
void makeOpaqueEnough(QImage& image) {
    const auto least = static_cast<quint16>(std::lround(leastOpacity * 65535));
    for (int y = 0; y < image.height(); ++y) {
        auto* line = reinterpret_cast<QRgba64*>(image.scanLine(y));
        for (int x = 0; x < image.width(); ++x) {
            if (line[x].alpha() < least) {
                QRgba64 colour = line[x].unpremultiplied();
                colour.setAlpha(least);
                line[x] = colour.premultiplied();
            }
        }
    }
}

QImage shadowOf(const QPainterPath& shape, const QSize& size, double ratio) {
    QImage shadow(size / coarseness, QImage::Format_ARGB32_Premultiplied);
    shadow.fill(Qt::transparent);
    QPainter painter(&shadow);
    painter.setRenderHint(QPainter::Antialiasing);
    painter.scale(1.0 / coarseness, 1.0 / coarseness);
    painter.translate(0, slabShadowDrop * ratio);
    painter.fillPath(shape, Theme::black(Theme::panelShadow));
    painter.end();
    shadow = shadow.convertToFormat(QImage::Format_Alpha8);
    blurAlpha(shadow, slabShadowRadius * ratio / 2 / coarseness);
    return shadow.convertToFormat(QImage::Format_ARGB32_Premultiplied);
}

} // namespace

FrostedSlab::FrostedSlab(QQuickItem* parent)
    : TextureItem(parent) {
    connect(this, &FrostedSlab::changed, this, &FrostedSlab::repaint);
}

void FrostedSlab::setIsShown(bool isShown) {
    if (isShown != isShown_) {
        isShown_ = isShown;
        Q_EMIT isShownChanged();
        repaint();
    }
}

TextureItem::Painted FrostedSlab::paintTexture(double devicePixelRatio) {
    if (!isShown_ || launcher_ == nullptr) {
        return {};
    }
    const QSize pixels = (size() * devicePixelRatio).toSize();
    const int margin =
        coarseness *
        static_cast<int>(std::ceil((slabShadowRadius + slabShadowDrop) * devicePixelRatio / coarseness));
    const QRectF body(QPointF(margin, margin), QSizeF(pixels));
    const QPainterPath shape = continuousRoundedRect(body, radius_ * devicePixelRatio);

    QImage image(pixels + QSize(2 * margin, 2 * margin), QImage::Format_ARGB32_Premultiplied);
    image.fill(Qt::transparent);
    QPainter painter(&image);
    painter.setRenderHints(QPainter::Antialiasing | QPainter::SmoothPixmapTransform);
    painter.drawImage(QRectF(image.rect()), shadowOf(shape, image.size(), devicePixelRatio));
    // Replaces the shadow instead of blending with it.
    QBrush frost(enlarged(behind(devicePixelRatio), pixels));
    frost.setTransform(QTransform::fromTranslate(body.x(), body.y()));
    painter.setCompositionMode(QPainter::CompositionMode_Source);
    painter.fillPath(shape, frost);
    painter.setCompositionMode(QPainter::CompositionMode_SourceOver);
    const double line = Theme::outlineWidth * devicePixelRatio;
    painter.strokePath(continuousRoundedRect(body.adjusted(line / 2, line / 2, -line / 2, -line / 2),
                                             radius_ * devicePixelRatio - line / 2),
                       QPen(Theme::white(Theme::panelOutline), line));
    painter.end();
    const QPointF corner = QPointF(-margin, -margin) / devicePixelRatio;
    return {image, QRectF(corner, QSizeF(image.size()) / devicePixelRatio)};
}

// What lies behind the slab, shrunk and blurred, with the frost's white and the slab's fill over it.
QImage FrostedSlab::behind(double devicePixelRatio) const {
    // The blur also needs what lies around the slab.
    const double margin = std::ceil(frostRadius / coarseness) * coarseness;
    const double scale = devicePixelRatio / coarseness; // small pixels in a point
    const QRectF area = QRectF(position(), size()).adjusted(-margin, -margin, margin, margin);
    QImage image((area.size() * scale).toSize(), QImage::Format_ARGB32_Premultiplied);
    image.fill(Qt::transparent);
    QPainter painter(&image);
    painter.setRenderHint(QPainter::SmoothPixmapTransform);
    painter.scale(scale, scale);
    painter.translate(-area.topLeft());
    if (background_ != nullptr) {
        const QImage& picture = background_->picture();
        painter.drawImage(QRectF({}, QSizeF(picture.size()) / devicePixelRatio), picture);
    }
    painter.setOpacity(dimming_);
    drawPage(painter);
    painter.end();
    image.convertTo(QImage::Format_RGBA64_Premultiplied);
    blurColours(image, frostRadius * scale / 2);
    image = image.copy(QRectF(QPointF(margin, margin) * scale, size() * scale).toRect());
    makeOpaqueEnough(image);
    painter.begin(&image);
    painter.fillRect(image.rect(), Theme::white(Theme::panelFrost));
    painter.fillRect(image.rect(), Theme::white(Theme::panelFill));
    painter.end();
    return image;
}

void FrostedSlab::drawPage(QPainter& painter) const {
    const GridMetrics metrics = launcher_->metrics();
    const double edge = metrics.iconSize();
    const int pixels = static_cast<int>(std::lround(edge * devicePixelRatio()));
    for (const VisibleEntry& entry : launcher_->visibleEntries()) {
        const QPointF corner = entry.center - QPointF(edge / 2, edge / 2 + metrics.iconRise());
        const QRectF icon(corner, QSizeF(edge, edge));
        if (const QString* path = entry.item.asApp()) {
            painter.drawImage(icon, IconCache::shared().icon(*path, pixels));
        } else {
            painter.fillRect(icon, Theme::white(Theme::folderWhite));
        }
    }
}

} // namespace amberquill
