#include "views/IconTextures.h"

#include "data/ContinuousCorners.h"
#include "data/IconCache.h"
#include "views/ImageEffects.h"
#include "views/Theme.h"

#include <QPainter>
#include <cmath>

namespace amberquill {

namespace {

// Of the shadow, in points. The radius is twice the standard deviation of the Gaussian.
constexpr double blurRadius = 12;
constexpr double drop = 6;

} // namespace

AppIconTexture::AppIconTexture(QQuickItem* parent)
    : TextureItem(parent) {
    connect(&IconCache::shared(), &IconCache::arrived, this, [this](const QString& path, int arrivedEdge) {
        if (path == path_ && arrivedEdge == edge(devicePixelRatio())) {
            repaint();
        }
    });
}

void AppIconTexture::setPath(const QString& path) {
    if (path != path_) {
        path_ = path;
        Q_EMIT pathChanged();
        repaint();
    }
}

void AppIconTexture::setBrightness(double brightness) {
    if (brightness != brightness_) {
        brightness_ = brightness;
        Q_EMIT brightnessChanged();
        repaint();
    }
}

TextureItem::Painted AppIconTexture::paintTexture(double devicePixelRatio) {
    const int pixels = edge(devicePixelRatio);
    const QImage icon = IconCache::shared().icon(path_, pixels);
    const double points = pixels / devicePixelRatio;
    return {withBrightness(icon, brightness_), {0, 0, points, points}};
}

int AppIconTexture::edge(double devicePixelRatio) const {
    return static_cast<int>(std::lround(width() * devicePixelRatio));
}

void IconShadow::setPath(const QString& path) {
    if (path != path_) {
        path_ = path;
        Q_EMIT changed();
        repaint();
    }
}

void IconShadow::setIsFolder(bool isFolder) {
    if (isFolder != isFolder_) {
        isFolder_ = isFolder;
        Q_EMIT changed();
        repaint();
    }
}

TextureItem::Painted IconShadow::paintTexture(double devicePixelRatio) {
    const int edge = static_cast<int>(std::lround(width() * devicePixelRatio));
    const int margin = static_cast<int>(std::ceil((blurRadius + drop) * devicePixelRatio));
    QImage shadow(edge + 2 * margin, edge + 2 * margin, QImage::Format_ARGB32_Premultiplied);
    shadow.fill(Qt::transparent);
    QPainter painter(&shadow);
    painter.setRenderHints(QPainter::Antialiasing | QPainter::SmoothPixmapTransform);
    painter.setOpacity(Theme::iconShadow);
    if (isFolder_) {
        const double body = edge * Theme::folderBody;
        const double inset = margin + (edge - body) / 2;
        painter.fillPath(continuousRoundedRect({inset, inset, body, body}, body * Theme::folderRadius),
                         Qt::black);
    } else {
        painter.drawImage(QRectF(margin, margin, edge, edge), IconCache::shared().icon(path_, edge));
    }
    painter.end();
    shadow = shadow.convertToFormat(QImage::Format_Alpha8);
    blurAlpha(shadow, blurRadius * devicePixelRatio / 2);
    const double points = shadow.width() / devicePixelRatio;
    const double left = -margin / devicePixelRatio;
    return {shadow.convertToFormat(QImage::Format_ARGB32_Premultiplied), {left, left + drop, points, points}};
}

} // namespace amberquill
