#include "views/TextureItem.h"

#include <QQuickWindow>
#include <QSGImageNode>
#include <cmath>
#include <memory>

namespace amberquill {

namespace {

// Whether textures below the node are drawn pixel for pixel, only moved: by whole pixels, where a point is
// not one of them.
bool isOnlyMoved(const QSGNode& node, const QPointF& corner, double devicePixelRatio) {
    QPointF place = corner;
    for (const QSGNode* above = node.parent(); above != nullptr; above = above->parent()) {
        if (above->type() != QSGNode::TransformNodeType) {
            continue;
        }
        const QMatrix4x4& matrix = static_cast<const QSGTransformNode*>(above)->matrix();
        if (matrix(0, 0) != 1 || matrix(1, 1) != 1 || matrix(0, 1) != 0 || matrix(1, 0) != 0) {
            return false;
        }
        place += QPointF(matrix(0, 3), matrix(1, 3));
    }
    const QPointF pixel = place * devicePixelRatio;
    return devicePixelRatio == 1 || (std::abs(pixel.x() - std::round(pixel.x())) < 0.01 &&
                                     std::abs(pixel.y() - std::round(pixel.y())) < 0.01);
}

} // namespace

// The image, smoothed only while something scales it: the software renderer copies pixels much faster than it
// interpolates them, and takes the slow way for everything that may be smoothed.
class TextureItem::Node final : public QSGNode {
public:
    explicit Node(QQuickWindow& window)
        : image_(window.createImageNode())
        , window_(window) {
        setFlag(UsePreprocess);
        image_->setOwnsTexture(true);
        appendChildNode(image_);
    }

    [[nodiscard]] QSGImageNode& image() { return *image_; }

    void preprocess() override {
        const bool copied = isOnlyMoved(*this, image_->rect().topLeft(), window_.effectiveDevicePixelRatio());
        image_->setFiltering(copied ? QSGTexture::Nearest : QSGTexture::Linear);
    }

private:
    QSGImageNode* image_; // a child, which the node deletes
    QQuickWindow& window_;
};

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
    std::unique_ptr<Node> drawn(static_cast<Node*>(node));
    if (painted_.image.isNull()) {
        return nullptr;
    }
    if (!drawn) {
        drawn = std::make_unique<Node>(*window());
        imageIsNew_ = true;
    }
    QSGImageNode& image = drawn->image();
    if (imageIsNew_) {
        imageIsNew_ = false;
        const bool opaque = !painted_.image.hasAlphaChannel();
        image.setTexture(window()->createTextureFromImage(
            painted_.image, opaque ? QQuickWindow::TextureIsOpaque : QQuickWindow::TextureHasAlphaChannel));
        image.setSourceRect(QRectF({}, QSizeF(painted_.image.size())));
    }
    image.setRect(painted_.rect);
    return drawn.release();
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
