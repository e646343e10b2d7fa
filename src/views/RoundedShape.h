#pragma once

#include "views/TextureItem.h"

#include <QColor>
#include <QtQml/qqmlregistration.h>

namespace amberquill {

// A rectangle with continuous corners and an outline inside its edge, which fills the item. With a radius of
// half the height it is a capsule; a square one is then a circle.
class RoundedShape : public amberquill::TextureItem {
    Q_OBJECT
    QML_ELEMENT
    Q_PROPERTY(double radius READ radius WRITE setRadius NOTIFY changed FINAL) // points
    Q_PROPERTY(QColor fill READ fill WRITE setFill NOTIFY changed FINAL)
    Q_PROPERTY(QColor outline READ outline WRITE setOutline NOTIFY changed FINAL)
    Q_PROPERTY(double outlineWidth READ outlineWidth WRITE setOutlineWidth NOTIFY changed FINAL) // points
    // Added to every component of both colours: -0.3 darkens, 0 leaves them as they are.
    Q_PROPERTY(double brightness READ brightness WRITE setBrightness NOTIFY changed FINAL)

public:
    using TextureItem::TextureItem;

    [[nodiscard]] double radius() const { return radius_; }
    void setRadius(double radius) { set(radius_, radius); }
    [[nodiscard]] QColor fill() const { return fill_; }
    void setFill(const QColor& fill) { set(fill_, fill); }
    [[nodiscard]] QColor outline() const { return outline_; }
    void setOutline(const QColor& outline) { set(outline_, outline); }
    [[nodiscard]] double outlineWidth() const { return outlineWidth_; }
    void setOutlineWidth(double outlineWidth) { set(outlineWidth_, outlineWidth); }

    [[nodiscard]] double brightness() const { return brightness_; }
    void setBrightness(double brightness) { set(brightness_, brightness); }

    // Whether the point, in the item's points, is inside of the shape.
    [[nodiscard]] bool contains(const QPointF& point) const override;

Q_SIGNALS:
    void changed();

protected:
    Painted paintTexture(double devicePixelRatio) override;

private:
    template<typename Value>
    void set(Value& member, const Value& value) {
        if (value != member) {
            member = value;
            Q_EMIT changed();
            repaint();
        }
    }

    double radius_ = 0;
    QColor fill_ = Qt::transparent;
    QColor outline_ = Qt::transparent;
    double outlineWidth_ = 0;
    double brightness_ = 0;
};

} // namespace amberquill
