#include "views/PointerArea.h"

#include <QMouseEvent>

namespace amberquill {

PointerArea::PointerArea(QQuickItem* parent)
    : QQuickItem(parent) {
    setAcceptedMouseButtons(Qt::LeftButton);
}

void PointerArea::setModel(LauncherModel* model) {
    if (model != model_) {
        model_ = model;
        Q_EMIT modelChanged();
    }
}

void PointerArea::mousePressEvent(QMouseEvent* event) {
    start_ = event->position();
    pressed_ = true;
    if (model_ != nullptr) {
        model_->pointerChanged({start_, start_});
    }
}

void PointerArea::mouseMoveEvent(QMouseEvent* event) {
    if (pressed_ && model_ != nullptr) {
        model_->pointerChanged({start_, event->position()});
    }
}

void PointerArea::mouseReleaseEvent(QMouseEvent* event) {
    // Before the release ends the grab: the ungrab that follows is not a cancellation.
    if (std::exchange(pressed_, false) && model_ != nullptr) {
        model_->pointerEnded({start_, event->position()});
    }
}

void PointerArea::mouseUngrabEvent() {
    if (std::exchange(pressed_, false) && model_ != nullptr) {
        model_->pointerCancelled();
    }
}

} // namespace amberquill
