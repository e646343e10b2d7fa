#pragma once

#include "model/LauncherModel.h"
#include "views/TextureItem.h"

#include <QtQml/qqmlregistration.h>

namespace amberquill {

class BackgroundLayer;

// The panel of an open folder: a rectangle with continuous corners that fills the item. It shows what lies
// behind it, blurred and a little lighter, with an outline inside its edge and a shadow around it. It is
// painted once when it is shown, and its image is freed when it is hidden.
class FrostedSlab : public amberquill::TextureItem {
    Q_OBJECT
    QML_ELEMENT
    Q_PROPERTY(amberquill::LauncherModel* launcher MEMBER launcher_ NOTIFY changed FINAL)
    Q_PROPERTY(amberquill::BackgroundLayer* background MEMBER background_ NOTIFY changed FINAL)
    Q_PROPERTY(double radius MEMBER radius_ NOTIFY changed FINAL) // of the corners, in points
    // The opacity of the page behind the panel.
    Q_PROPERTY(double dimming MEMBER dimming_ NOTIFY changed FINAL)
    Q_PROPERTY(bool isShown READ isShown WRITE setIsShown NOTIFY isShownChanged FINAL)

public:
    explicit FrostedSlab(QQuickItem* parent = nullptr);

    [[nodiscard]] bool isShown() const { return isShown_; }
    void setIsShown(bool isShown);

Q_SIGNALS:
    void changed();
    void isShownChanged();

protected:
    Painted paintTexture(double devicePixelRatio) override;

private:
    [[nodiscard]] QImage behind(double devicePixelRatio) const;
    void drawPage(QPainter& painter) const;

    LauncherModel* launcher_ = nullptr;
    BackgroundLayer* background_ = nullptr;
    double radius_ = 0;
    double dimming_ = 1;
    bool isShown_ = false;
};

} // namespace amberquill
