#pragma once

#include <QImage>
#include <QRect>

class QScreen;

namespace amberquill {

// Pictures of what is on a screen, for a backdrop under the launcher.
class ScreenCapture {
public:
    ScreenCapture() = default;
    ScreenCapture(const ScreenCapture&) = delete;
    ScreenCapture& operator=(const ScreenCapture&) = delete;
    virtual ~ScreenCapture() = default;

    // Where capture() finds the screen, in device pixels; empty where nothing can be captured. Main thread
    // only.
    [[nodiscard]] virtual QRect area(const QScreen& screen) const = 0;

    // What is in the area now, all windows included, without the pointer. Each pixel of the image (opaque
    // RGB) is the mean of `shrink` × `shrink` device pixels, fewer at the right and bottom edges. Waits for
    // it, but not long: a null image when it cannot be had at once. On any thread, one at a time.
    [[nodiscard]] virtual QImage capture(const QRect& area, int shrink) = 0;
};

class NullScreenCapture final : public ScreenCapture {
public:
    [[nodiscard]] QRect area(const QScreen&) const override { return {}; }
    [[nodiscard]] QImage capture(const QRect&, int) override { return {}; }
};

} // namespace amberquill
