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
    bool isTranslucent;
    std::future<QImage> image;
};

// At most one: what was prepared is taken by the item that asks for it, or dropped.
std::optional<Prepared>& prepared() {
    static std::optional<Prepared> thePrepared;
    return thePrepared;
}

QImage wash(BackgroundTheme theme, const QSize& pixels, double devicePixelRatio, bool isTranslucent) {
    return isTranslucent ? backgroundWash(theme, pixels, devicePixelRatio)
                         : opaqueBackground(theme, pixels, devicePixelRatio, {});
}

} // namespace

void BackgroundLayer::prepare(BackgroundTheme theme, const QSize& pixels, double devicePixelRatio,
                              bool isTranslucent) {
    prepared() =
        Prepared{theme, pixels, devicePixelRatio, isTranslucent,
                 std::async(std::launch::async, wash, theme, pixels, devicePixelRatio, isTranslucent)};
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
    const bool isTranslucent = window()->requestedFormat().hasAlpha();
    auto ready = std::exchange(prepared(), std::nullopt);
    const bool fits = ready && ready->theme == theme && ready->pixels == pixels &&
                      ready->devicePixelRatio == devicePixelRatio && ready->isTranslucent == isTranslucent;
    return {fits ? ready->image.get() : wash(theme, pixels, devicePixelRatio, isTranslucent), rect};
}

} // namespace amberquill
