#pragma once

#include "model/LauncherModel.h"
#include "views/Backdrop.h"
#include "views/TextureItem.h"

#include <QPointer>
#include <QtQml/qqmlregistration.h>
#include <memory>

namespace amberquill {

// The launcher's background, filling the item: the wash of its theme over the backdrop.
class BackgroundLayer : public amberquill::TextureItem {
    Q_OBJECT
    QML_ELEMENT
    Q_PROPERTY(
        amberquill::LauncherModel* launcher READ launcher WRITE setLauncher NOTIFY launcherChanged FINAL)

public:
    using TextureItem::TextureItem;

    // What it is shown over from the next frame on. Until the first one it is the wash alone.
    void setBackdrop(std::shared_ptr<const Backdrop> backdrop);

    // Lets go of it and of what is painted, in a window that is off the screen, until there is another one.
    void forgetBackdrop();

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
    std::shared_ptr<const Backdrop> backdrop_;
};

// The desktop as it is without the launcher, filling the item: what lies lowest in a window that nothing
// shows through, while the launcher comes and goes.
class DesktopPicture final : public TextureItem {
    Q_OBJECT

public:
    using TextureItem::TextureItem;

    // Null: there is none.
    void setImage(const QImage& image);

    // Lets go of it, in a window that is off the screen.
    void forget();

protected:
    Painted paintTexture(double devicePixelRatio) override;

private:
    QImage image_;
};

} // namespace amberquill
