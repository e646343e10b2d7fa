#pragma once

#include "data/BackgroundTheme.h"
#include "platform/ScreenCapture.h"
#include "platform/common/AsyncValue.h"

#include <QImage>
#include <QSize>
#include <functional>
#include <vector>

namespace amberquill {

// What the colour wash is painted for.
struct BackgroundLook {
    BackgroundTheme theme;
    QSize pixels; // device pixels
    double devicePixelRatio;
    bool isTranslucent; // what lies behind the window is seen through it

    bool operator==(const BackgroundLook&) const = default;
};

// What is seen of a look over a backdrop, which may be null. Pure; safe on any thread.
[[nodiscard]] QImage paintBackground(const BackgroundLook& look, const QImage& backdrop);

// How many device pixels each way become one of the picture that is blurred.
[[nodiscard]] int backdropShrink(double devicePixelRatio);

// What lies behind the launcher while it is up, as it was when the launcher came. Made away from the main
// thread: who shows it waits for what is not ready yet. Safe on any thread.
class Backdrop {
public:
    // Reads a screen; null images where there is nothing to be read. Called once, on another thread.
    using Read = std::function<ScreenPicture()>;

    // Whether the window lies on the screen like a sheet of paper or of glass.
    enum class Sheet { Opaque, Glass };

    // The launcher's background over what is read, blurred; the tint alone where that is nothing. `hidden`:
    // parts of what is read, in its shrunk pixels, that are not to be seen in the background.
    Backdrop(Read read, const BackgroundLook& look, Sheet sheet = Sheet::Glass,
             std::vector<QRect> hidden = {});
    Backdrop(const Backdrop&) = delete;
    Backdrop& operator=(const Backdrop&) = delete;
    // Waits until the screen has been read.
    ~Backdrop() { made_.waitUntil(QDeadlineTimer(QDeadlineTimer::Forever)); }

    // Waits until the screen has been read: from then on the launcher may cover it. The screen as it is, for
    // a window that nothing shows through: it is black where nothing is drawn, so where the screen cannot be
    // read it is the launcher's background. Null for other windows.
    [[nodiscard]] const QImage& whole() const { return whole_.get(); }

    // Whether what lies behind the window is seen through it.
    [[nodiscard]] bool isTranslucent() const { return look_.isTranslucent; }

    // The picture for a look, in device pixels; at once if it is the one that was asked for first.
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
