#include "views/BackgroundLayer.h"

#include "views/BackgroundWash.h"

#include <QQuickWindow>
#include <future>
#include <optional>

namespace amberquill {

namespace {

struct Prepared {
    BackgroundTheme theme;
    QSize pixels;
    double devicePixelRatio;
    std::future<QImage> image;
};

// At most one: what was prepared is taken by the item that asks for it, or dropped.
std::optional<Prepared>& prepared() {
    static std::optional<Prepared> thePrepared;
    return thePrepared;
}

} // namespace

void BackgroundLayer::prepare(BackgroundTheme theme, const QSize& pixels, double devicePixelRatio) {
    prepared() = Prepared{theme, pixels, devicePixelRatio,
                          std::async(std::launch::async, backgroundWash, theme, pixels, devicePixelRatio)};
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
    const BackgroundTheme theme = launcher_ != nullptr ? launcher_->background() : BackgroundTheme::Blue;
    const QSize pixels = (size() * devicePixelRatio).toSize();
    const QRectF rect({}, QSizeF(pixels) / devicePixelRatio);
    auto ready = std::exchange(prepared(), std::nullopt);
    QImage wash = ready && ready->theme == theme && ready->pixels == pixels &&
                          ready->devicePixelRatio == devicePixelRatio
                      ? ready->image.get()
                      : backgroundWash(theme, pixels, devicePixelRatio);
    if (!window()->requestedFormat().hasAlpha()) {
        // Premultiplied colours are what they are over black.
        wash.reinterpretAsFormat(QImage::Format_RGB32);
    }
    return {wash, rect};
}

} // namespace amberquill
