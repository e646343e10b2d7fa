#pragma once

#include "model/LauncherModel.h"
#include "views/Backdrop.h"
#include "views/TextureItem.h"

#include <QPointer>
#include <QtQml/qqmlregistration.h>
#include <memory>

namespace amberquill {

// The launcher's background: the wash of its theme over the backdrop. It fills the item.
class BackgroundLayer : public amberquill::TextureItem {
    Q_OBJECT
    QML_ELEMENT
    Q_PROPERTY(
        amberquill::LauncherModel* launcher READ launcher WRITE setLauncher NOTIFY launcherChanged FINAL)

public:
    using TextureItem::TextureItem;

    // Shown from the next frame on. Before the first backdrop the layer is the wash alone.
    void setBackdrop(std::shared_ptr<const Backdrop> backdrop);

    // Frees the backdrop and the painted image until setBackdrop(). For a window that is off the screen.
    void forgetBackdrop();

    // The painted image, in device pixels.
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

// A picture of the desktop that fills the item. An opaque window shows it below the launcher while the
// launcher fades in and out.
class DesktopPicture final : public TextureItem {
    Q_OBJECT

public:
    using TextureItem::TextureItem;

    // Null: nothing is shown.
    void setImage(const QImage& image);

    // Frees the picture. For a window that is off the screen.
    void forget();

protected:
    Painted paintTexture(double devicePixelRatio) override;

private:
    QImage image_;
};

} // namespace amberquill
