#include "views/TextureItem.h"

#include <QQuickWindow>
#include <QSGImageNode>
#include <QSGRendererInterface>
#include <cmath>
#include <memory>
#include <utility>

namespace amberquill {

namespace {

// Whether textures below the node are drawn pixel for pixel: nothing above scales or rotates them, and at
// other ratios than 1 they are moved by whole pixels.
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

// Draws the image, smoothed only while something scales it: the software renderer copies pixels much faster
// than it interpolates them.
class TextureItem::Node final : public QSGNode {
public:
    explicit Node(QQuickWindow& window)
        : window_(window) {
        setFlag(UsePreprocess);
    }
    Node(const Node&) = delete;
    Node& operator=(const Node&) = delete;
    ~Node() override { *known_ = nullptr; }

    // Points to the node, and to null once the node is deleted.
    [[nodiscard]] const std::shared_ptr<Node*>& known() const { return known_; }

    [[nodiscard]] bool isEmpty() const { return image_ == nullptr; }

    void setRect(const QRectF& rect) { image_->setRect(rect); }

    void setImage(const QImage& image, const QRectF& rect) {
        const bool isNew = isEmpty();
        if (isNew) {
            image_ = window_.createImageNode();
            image_->setOwnsTexture(true);
        }
        image_->setTexture(window_.createTextureFromImage(image, image.hasAlphaChannel()
                                                                     ? QQuickWindow::TextureHasAlphaChannel
                                                                     : QQuickWindow::TextureIsOpaque));
        image_->setSourceRect(QRectF({}, QSizeF(image.size())));
        image_->setRect(rect);
        if (isNew) {
            // Last: the software renderer reads the node at once.
            appendChildNode(image_);
        }
    }

    // Also deletes the texture.
    void clear() { delete std::exchange(image_, nullptr); }

    void preprocess() override {
        if (isEmpty()) {
            return;
        }
        const bool copied = isOnlyMoved(*this, image_->rect().topLeft(), window_.effectiveDevicePixelRatio());
        image_->setFiltering(copied ? QSGTexture::Nearest : QSGTexture::Linear);
    }

private:
    QSGImageNode* image_ = nullptr; // a child, which the node deletes
    QQuickWindow& window_;
    std::shared_ptr<Node*> known_ = std::make_shared<Node*>(this);
};

TextureItem::TextureItem(QQuickItem* parent)
    : QQuickItem(parent) {
    setFlag(ItemHasContents);
}

void TextureItem::repaint() {
    needsPainting_ = true;
    polish();
}

void TextureItem::forgetPainted() {
    needsPainting_ = false;
    painted_ = {};
    update();
    clearDrawn();
}

// The item leaves its window. Its node would stay until the next frame, which may be far off.
void TextureItem::releaseResources() {
    clearDrawn();
    QQuickItem::releaseResources();
}

// The software renderer runs on this thread, so its nodes may be changed between two frames. A window that is
// off the screen draws no frame that would free them.
void TextureItem::clearDrawn() {
    const bool isSoftware =
        window() != nullptr && window()->rendererInterface()->graphicsApi() == QSGRendererInterface::Software;
    if (isSoftware && node_ && *node_ != nullptr) {
        (*node_)->clear();
    }
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
    // The software renderer ignores opacity and transforms above an image that is added to an existing node,
    // so a new node is made.
    if (!drawn || drawn->isEmpty()) {
        drawn = std::make_unique<Node>(*window());
        node_ = drawn->known();
    }
    if (std::exchange(imageIsNew_, false) || drawn->isEmpty()) {
        drawn->setImage(painted_.image, painted_.rect);
    } else {
        drawn->setRect(painted_.rect);
    }
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
