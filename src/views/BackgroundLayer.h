#pragma once

#include "data/BackgroundTheme.h"
#include "model/LauncherModel.h"
#include "views/TextureItem.h"

#include <QPointer>
#include <QtQml/qqmlregistration.h>

namespace amberquill {

// The wash of the launcher's background theme, filling the item.
class BackgroundLayer : public amberquill::TextureItem {
    Q_OBJECT
    QML_ELEMENT
    Q_PROPERTY(
        amberquill::LauncherModel* launcher READ launcher WRITE setLauncher NOTIFY launcherChanged FINAL)

public:
    using TextureItem::TextureItem;

    // Paints a wash away from the main thread before an item asks for it, so that the first frame finds it
    // ready.
    static void prepare(BackgroundTheme theme, const QSize& pixels, double devicePixelRatio,
                        bool isTranslucent);

    // What the layer shows, in device pixels.
    [[nodiscard]] const QImage& picture() const { return painted().image; }

    [[nodiscard]] LauncherModel* launcher() const { return launcher_; }
    void setLauncher(LauncherModel* launcher);

Q_SIGNALS:
    void launcherChanged();

protected:
    Painted paintTexture(double devicePixelRatio) override;

private:
    QPointer<LauncherModel> launcher_;
};

} // namespace amberquill
