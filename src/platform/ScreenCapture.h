#pragma once

#include <QImage>
#include <QRect>
#include <QString>

class QScreen;

namespace amberquill {

// The place of a screen, as needed for reading it.
struct ScreenArea {
    QRect pixels = {};   // in device pixels; empty where nothing can be captured
    QString output = {}; // the output's name, if the pixels do not identify the screen

    bool operator==(const ScreenArea&) const = default;
};

// The content of a screen: opaque, in QImage::Format_RGB32.
struct ScreenPicture {
    QImage shrunk; // each pixel the mean of a square of device pixels, fewer at the right and bottom edges
    QImage whole;  // pixel for pixel, if requested
};

// Takes pictures of a screen, for the backdrop under the launcher.
class ScreenCapture {
public:
    ScreenCapture() = default;
    ScreenCapture(const ScreenCapture&) = delete;
    ScreenCapture& operator=(const ScreenCapture&) = delete;
    virtual ~ScreenCapture() = default;

    // The area of the screen, for capture(). Null stands for the screen that the window system will choose
    // for a new window. Main thread only.
    [[nodiscard]] virtual ScreenArea area(const QScreen* screen) const = 0;

    // The content of the area now, with all windows and without the pointer; `shrink` is the edge in device
    // pixels of the squares that are averaged. Waits only briefly: missing parts are filled from the area's
    // last picture or from the desktop's wallpaper. Null images: there is neither. On any thread, one at a
    // time.
    [[nodiscard]] virtual ScreenPicture capture(const ScreenArea& area, int shrink, bool alsoWhole) = 0;
};

class NullScreenCapture final : public ScreenCapture {
public:
    [[nodiscard]] ScreenArea area(const QScreen*) const override { return {}; }
    [[nodiscard]] ScreenPicture capture(const ScreenArea&, int, bool) override { return {}; }
};

} // namespace amberquill
