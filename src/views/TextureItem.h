// views/: what is drawn. QML lays out and binds. The C++ items paint shapes, labels and icons once, as images
// at device resolution, which look the same on a GPU and on the software renderer; from then on they are only
// moved.
#pragma once

#include <QImage>
#include <QQuickItem>
#include <QRectF>
#include <QtQml/qqmlregistration.h>
#include <memory>

namespace amberquill {

// An item drawn as one image, painted when what it shows changes.
class TextureItem : public QQuickItem {
    Q_OBJECT
    QML_ANONYMOUS

public:
    explicit TextureItem(QQuickItem* parent = nullptr);

protected:
    struct Painted {
        QImage image; // at device resolution
        QRectF rect;  // where it is drawn, in the item's points; may reach beyond the item
    };

    // Paints what the item shows. Called on the main thread, with a size.
    virtual Painted paintTexture(double devicePixelRatio) = 0;

    // Has the item painted anew before the next frame.
    void repaint();

    [[nodiscard]] double devicePixelRatio() const;

    // Frees the painted image until repaint(). For an item in a window that is off the screen. With the
    // software renderer its texture is freed at once, else with the next frame.
    void forgetPainted();

    [[nodiscard]] const Painted& painted() const { return painted_; }

    void updatePolish() override;
    void releaseResources() override;
    QSGNode* updatePaintNode(QSGNode* node, UpdatePaintNodeData* data) override;
    void geometryChange(const QRectF& newGeometry, const QRectF& oldGeometry) override;
    void itemChange(ItemChange change, const ItemChangeData& value) override;

private:
    class Node;

    void clearDrawn();

    Painted painted_;
    std::shared_ptr<Node*> node_; // null before the first frame; points to null once the node is deleted
    bool imageIsNew_ = false;
    bool needsPainting_ = true;
};

} // namespace amberquill
