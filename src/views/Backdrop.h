#pragma once

#include "data/BackgroundTheme.h"
#include "platform/ScreenCapture.h"
#include "platform/common/AsyncValue.h"

#include <QImage>
#include <QSize>
#include <functional>
#include <vector>

namespace amberquill {

// All that a background depends on but what lies behind it.
struct BackgroundLook {
    BackgroundTheme theme;
    QSize pixels; // device pixels
    double devicePixelRatio;
    bool isTranslucent; // the wash alone: the window system shows what lies behind the window

    bool operator==(const BackgroundLook&) const = default;
};

// Paints a background over a blurred backdrop, or over black if the backdrop is null. Pure; safe on any
// thread.
[[nodiscard]] QImage paintBackground(const BackgroundLook& look, const QImage& backdrop);

// By how much a screen is shrunk in each direction before it is blurred.
[[nodiscard]] int backdropShrink(double devicePixelRatio);

// The picture of the screen that the launcher is shown over, and the launcher's background made of it. Both
// are made on another thread; their getters wait until they are ready. Safe on any thread.
class Backdrop {
public:
    // Reads a screen; null images if it cannot be read. Called once, on another thread.
    using Read = std::function<ScreenPicture()>;

    // Whether the desktop shows through the window where the launcher draws nothing.
    enum class Window { Opaque, Translucent };

    // Begins to read the screen and to paint the background over it. `hidden`: parts of the screen, in pixels
    // of the shrunk image, that the background leaves out.
    Backdrop(Read read, const BackgroundLook& look, Window window = Window::Translucent,
             std::vector<QRect> hidden = {});
    Backdrop(const Backdrop&) = delete;
    Backdrop& operator=(const Backdrop&) = delete;
    // Waits until the screen has been read.
    ~Backdrop() { made_.waitUntil(QDeadlineTimer(QDeadlineTimer::Forever)); }

    // What an opaque window shows in place of the desktop: the screen, or the launcher's background if the
    // screen cannot be read. Null for a translucent window. Waits until the screen has been read; from then
    // on the launcher may cover the screen.
    [[nodiscard]] const QImage& whole() const { return whole_.get(); }

    [[nodiscard]] bool isTranslucent() const { return look_.isTranslucent; }

    // The background in device pixels. For another look than the constructor's it is painted here.
    [[nodiscard]] QImage picture(const BackgroundLook& look) const;

private:
    struct Made {
        QImage blurred;
        QImage picture;
    };

    BackgroundLook look_;
    AsyncValue<QImage> whole_;
    AsyncValue<Made> made_;
};

} // namespace amberquill
