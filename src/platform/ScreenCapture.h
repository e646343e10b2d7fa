#pragma once

#include <QImage>
#include <QRect>
#include <QString>

class QScreen;

namespace amberquill {

// Where a screen is found by who reads it.
struct ScreenArea {
    QRect pixels = {};   // in device pixels; empty where nothing can be captured
    QString output = {}; // its name, where pixels alone do not tell one screen from another

    bool operator==(const ScreenArea&) const = default;
};

// What is on a screen: opaque, in QImage::Format_RGB32.
struct ScreenPicture {
    QImage shrunk; // each pixel the mean of a square of device pixels, fewer at the right and bottom edges
    QImage whole;  // pixel for pixel, where that was asked for
};

// Pictures of what is on a screen, for a backdrop under the launcher.
class ScreenCapture {
public:
    ScreenCapture() = default;
    ScreenCapture(const ScreenCapture&) = delete;
    ScreenCapture& operator=(const ScreenCapture&) = delete;
    virtual ~ScreenCapture() = default;

    // Where capture() finds the screen; null stands for the one that the window system will choose for a new
    // window. Main thread only.
    [[nodiscard]] virtual ScreenArea area(const QScreen* screen) const = 0;

    // What is in the area now, all windows included, without the pointer; `shrink` is the edge in device
    // pixels of the squares that are averaged. Waits for it, but not long: what cannot be had at once is
    // filled from what there was last in the area, or from the desktop's own picture. Null images where there
    // is none of these. On any thread, one at a time.
    [[nodiscard]] virtual ScreenPicture capture(const ScreenArea& area, int shrink, bool alsoWhole) = 0;
};

class NullScreenCapture final : public ScreenCapture {
public:
    [[nodiscard]] ScreenArea area(const QScreen*) const override { return {}; }
    [[nodiscard]] ScreenPicture capture(const ScreenArea&, int, bool) override { return {}; }
};

} // namespace amberquill
