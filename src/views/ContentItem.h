#pragma once

#include <QQuickItem>
#include <QtQml/qqmlregistration.h>

namespace amberquill {

// The root of the view tree. Tells the device pixel ratio of its window.
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
