#include "views/AppIconTexture.h"

#include "data/IconCache.h"
#include "views/Brightness.h"

#include <cmath>

namespace amberquill {

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

} // namespace amberquill
