#include "views/DragView.h"

namespace amberquill {

DragView::DragView(LauncherModel& model, QObject* parent)
    : QObject(parent)
    , model_(model) {
    connect(&model, &LauncherModel::dragChanged, this, [this] {
        Q_EMIT centerChanged();
        Q_EMIT changed();
    });
    connect(model.tracker(), &DragTracker::locationChanged, this, &DragView::centerChanged);
}

QString DragView::path() const {
    const QString* path = isActive() ? model_.drag()->item.asApp() : nullptr;
    return path != nullptr ? *path : QString();
}

QStringList DragView::appPaths() const {
    const Folder* folder = isActive() ? model_.drag()->item.asFolder() : nullptr;
    return folder != nullptr ? folder->apps : QStringList();
}

QPointF DragView::center() const {
    return isActive() ? model_.tracker()->location() - model_.drag()->grabOffset : QPointF();
}

} // namespace amberquill
