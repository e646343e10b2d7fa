#include "views/Backdrop.h"

#include "views/BackgroundWash.h"
#include "views/ImageEffects.h"

#include <QLoggingCategory>
#include <algorithm>
#include <cmath>
#include <memory>
#include <utility>

namespace amberquill {

namespace {

Q_LOGGING_CATEGORY(backdropLog, "amberquill.views", QtCriticalMsg)

// In points.
constexpr double blurSigma = 30;
constexpr double shrinkPoints = 8;

} // namespace

QImage paintBackground(const BackgroundLook& look, const QImage& backdrop) {
    return look.isTranslucent ? backgroundWash(look.theme, look.pixels, look.devicePixelRatio)
                              : opaqueBackground(look.theme, look.pixels, look.devicePixelRatio, backdrop);
}

int backdropShrink(double devicePixelRatio) {
    return std::max(1, static_cast<int>(std::lround(shrinkPoints * devicePixelRatio)));
}

Backdrop::Backdrop(Read read, const BackgroundLook& look, Window window, std::vector<QRect> hidden)
    : look_(look) {
    made_.start([read = std::move(read), look, whole = whole_, window, hidden = std::move(hidden)] {
        ScreenPicture screen = read();
        if (screen.shrunk.isNull() && !look.isTranslucent) {
            qCDebug(backdropLog, "no picture of the screen: the background is the theme's colours alone");
        }
        const bool isMissing = window == Window::Opaque && screen.whole.isNull();
        if (!isMissing) {
            whole.give(std::exchange(screen.whole, {}));
        }
        if (!screen.shrunk.isNull()) {
            fillFromAround(screen.shrunk, hidden);
            screen.shrunk.convertTo(QImage::Format_RGBX64);
            blurColours(screen.shrunk,
                        blurSigma * look.devicePixelRatio / backdropShrink(look.devicePixelRatio));
        }
        Made made{screen.shrunk, paintBackground(look, screen.shrunk)};
        if (isMissing) {
            whole.give(made.picture);
        }
        return made;
    });
}

QImage Backdrop::picture(const BackgroundLook& look) const {
    const Made& made = made_.get();
    return look == look_ ? made.picture : paintBackground(look, made.blurred);
}

} // namespace amberquill
