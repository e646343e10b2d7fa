#pragma once

#include <QObject>
#include <QPointF>

namespace amberquill {

// Where the pointer is during a drag, in the launcher's content. It is an object of its own so that a move
// of the pointer reaches only what follows the pointer.
class DragTracker final : public QObject {
    Q_OBJECT
    Q_PROPERTY(QPointF location READ location NOTIFY locationChanged FINAL)

public:
    using QObject::QObject;

    [[nodiscard]] QPointF location() const { return location_; }
    void setLocation(const QPointF& location);

Q_SIGNALS:
    void locationChanged();

private:
    QPointF location_;
};

} // namespace amberquill
