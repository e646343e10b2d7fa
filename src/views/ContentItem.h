#pragma once

#include <QQuickItem>
#include <QtQml/qqmlregistration.h>

namespace amberquill {

// The root of the view tree: knows how many device pixels a point has on the screen it is on.
class ContentItem : public QQuickItem {
    Q_OBJECT
    QML_ELEMENT
    Q_PROPERTY(double devicePixelRatio READ devicePixelRatio NOTIFY devicePixelRatioChanged FINAL)

public:
    using QQuickItem::QQuickItem;

    [[nodiscard]] double devicePixelRatio() const;

    // The nearest whole device pixel to a position in points.
    [[nodiscard]] Q_INVOKABLE double snapped(double value) const;

Q_SIGNALS:
    void devicePixelRatioChanged();

protected:
    void itemChange(ItemChange change, const ItemChangeData& value) override;
};

} // namespace amberquill
