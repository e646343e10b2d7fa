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
    explicit ContentItem(QQuickItem* parent = nullptr);

    [[nodiscard]] double devicePixelRatio() const;

Q_SIGNALS:
    void devicePixelRatioChanged();

protected:
    void itemChange(ItemChange change, const ItemChangeData& value) override;
};

} // namespace amberquill
