#include "views/TextureItem.h"

#include <QQuickWindow>
#include <QSGImageNode>
#include <memory>

namespace amberquill {

TextureItem::TextureItem(QQuickItem* parent)
    : QQuickItem(parent) {
    setFlag(ItemHasContents);
}

void TextureItem::repaint() {
    needsPainting_ = true;
    polish();
}

double TextureItem::devicePixelRatio() const {
    return window() != nullptr ? window()->effectiveDevicePixelRatio() : 1;
}

void TextureItem::updatePolish() {
    if (!needsPainting_ || window() == nullptr || width() <= 0 || height() <= 0) {
        return;
    }
    needsPainting_ = false;
    painted_ = paintTexture(devicePixelRatio());
    imageIsNew_ = true;
    update();
}

QSGNode* TextureItem::updatePaintNode(QSGNode* node, UpdatePaintNodeData* /*data*/) {
    std::unique_ptr<QSGImageNode> image(static_cast<QSGImageNode*>(node));
    if (painted_.image.isNull()) {
        return nullptr;
    }
    if (!image) {
        image.reset(window()->createImageNode());
        image->setOwnsTexture(true);
        image->setFiltering(QSGTexture::Linear);
        imageIsNew_ = true;
    }
    if (imageIsNew_) {
        imageIsNew_ = false;
        const bool opaque = !painted_.image.hasAlphaChannel();
        image->setTexture(window()->createTextureFromImage(
            painted_.image, opaque ? QQuickWindow::TextureIsOpaque : QQuickWindow::TextureHasAlphaChannel));
        image->setSourceRect(QRectF({}, QSizeF(painted_.image.size())));
    }
    image->setRect(painted_.rect);
    return image.release();
}

void TextureItem::geometryChange(const QRectF& newGeometry, const QRectF& oldGeometry) {
    if (newGeometry.size() != oldGeometry.size()) {
        repaint();
    }
    QQuickItem::geometryChange(newGeometry, oldGeometry);
}

void TextureItem::itemChange(ItemChange change, const ItemChangeData& value) {
    if (change == ItemDevicePixelRatioHasChanged || (change == ItemSceneChange && value.window != nullptr)) {
        repaint();
    }
    QQuickItem::itemChange(change, value);
}

} // namespace amberquill
