#include "views/BackgroundLayer.h"

#include <QQuickWindow>

namespace amberquill {

void BackgroundLayer::setBackdrop(std::shared_ptr<const Backdrop> backdrop) {
    backdrop_ = std::move(backdrop);
    repaint();
}

void BackgroundLayer::forgetBackdrop() {
    backdrop_.reset();
    forgetPainted();
}

void BackgroundLayer::setLauncher(LauncherModel* launcher) {
    if (launcher == launcher_) {
        return;
    }
    if (launcher_ != nullptr) {
        launcher_->disconnect(this);
    }
    launcher_ = launcher;
    if (launcher_ != nullptr) {
        connect(launcher_, &LauncherModel::backgroundChanged, this, &BackgroundLayer::repaint);
    }
    Q_EMIT launcherChanged();
    repaint();
}

TextureItem::Painted BackgroundLayer::paintTexture(double devicePixelRatio) {
    const QSize pixels = (size() * devicePixelRatio).toSize();
    const QRectF rect({}, QSizeF(pixels) / devicePixelRatio);
    const BackgroundLook look{
        launcher_ != nullptr ? launcher_->background() : BackgroundTheme::Blue, pixels, devicePixelRatio,
        backdrop_ ? backdrop_->isTranslucent() : window()->requestedFormat().hasAlpha()};
    return {backdrop_ ? backdrop_->picture(look) : paintBackground(look, {}), rect};
}

void DesktopPicture::setImage(const QImage& image) {
    image_ = image;
    repaint();
}

void DesktopPicture::forget() {
    image_ = {};
    forgetPainted();
}

TextureItem::Painted DesktopPicture::paintTexture(double /*devicePixelRatio*/) {
    return {image_, QRectF({}, size())};
}

} // namespace amberquill
