#pragma once

#include "model/LauncherModel.h"

#include <QPointF>
#include <QStringList>
#include <QtQml/qqmlregistration.h>

namespace amberquill {

// The dragged item, for the icon that follows the pointer.
class DragView : public QObject {
    Q_OBJECT
    QML_ELEMENT
    QML_UNCREATABLE("made by the program")
    Q_PROPERTY(bool isActive READ isActive NOTIFY changed FINAL)
    Q_PROPERTY(bool dropping READ dropping NOTIFY changed FINAL)
    Q_PROPERTY(bool isFolder READ isFolder NOTIFY changed FINAL)
    Q_PROPERTY(QString path READ path NOTIFY changed FINAL)             // of an application
    Q_PROPERTY(QStringList appPaths READ appPaths NOTIFY changed FINAL) // of a folder
    Q_PROPERTY(QPointF center READ center NOTIFY centerChanged FINAL)   // in the content's points

public:
    // The model outlives the view.
    explicit DragView(LauncherModel& model, QObject* parent = nullptr);

    [[nodiscard]] bool isActive() const { return model_.drag().has_value(); }
    [[nodiscard]] bool dropping() const { return isActive() && model_.drag()->dropping; }
    [[nodiscard]] bool isFolder() const { return isActive() && model_.drag()->item.isFolder(); }
    [[nodiscard]] QString path() const;
    [[nodiscard]] QStringList appPaths() const;
    [[nodiscard]] QPointF center() const;

Q_SIGNALS:
    void changed();
    void centerChanged();

private:
    LauncherModel& model_;
};

} // namespace amberquill
