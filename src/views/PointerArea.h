#pragma once

#include "model/LauncherModel.h"

#include <QPointF>
#include <QPointer>
#include <QQuickItem>
#include <QtQml/qqmlregistration.h>

namespace amberquill {

// Passes presses, moves and releases of the main button (or a finger) to the model, in the item's
// coordinates.
class PointerArea : public QQuickItem {
    Q_OBJECT
    QML_ELEMENT
    Q_PROPERTY(amberquill::LauncherModel* model READ model WRITE setModel NOTIFY modelChanged FINAL)

public:
    explicit PointerArea(QQuickItem* parent = nullptr);

    [[nodiscard]] LauncherModel* model() const { return model_; }
    void setModel(LauncherModel* model);

Q_SIGNALS:
    void modelChanged();

protected:
    void mousePressEvent(QMouseEvent* event) override;
    void mouseMoveEvent(QMouseEvent* event) override;
    void mouseReleaseEvent(QMouseEvent* event) override;
    void mouseUngrabEvent() override;

private:
    QPointer<LauncherModel> model_;
    QPointF start_;
    bool pressed_ = false;
};

} // namespace amberquill
