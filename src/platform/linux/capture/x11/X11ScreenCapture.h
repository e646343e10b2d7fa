#pragma once

#include "platform/ScreenCapture.h"
#include "platform/linux/capture/LastPictures.h"

#include <QByteArray>
#include <chrono>
#include <memory>

namespace amberquill::desktop {

class RootReader;

// Limits in time: for each reply, for a whole capture, and for the wallpaper that replaces a failed one.
struct CapturePatience {
    std::chrono::milliseconds forEach{80};
    std::chrono::milliseconds forAll{240};
    std::chrono::milliseconds forSubstitute{80};
};

// Reads the root window, which has the screen's pixels with or without a compositing manager. Uses its own
// connection, opened at the first capture: no other request waits for the pixels, and waits are bounded.
class X11ScreenCapture final : public ScreenCapture {
public:
    // `display`: the server's name; empty: $DISPLAY.
    explicit X11ScreenCapture(QByteArray display = {}, const CapturePatience& patience = {});
    ~X11ScreenCapture() override;

    X11ScreenCapture(const X11ScreenCapture&) = delete;
    X11ScreenCapture& operator=(const X11ScreenCapture&) = delete;

    [[nodiscard]] ScreenArea area(const QScreen* screen) const override;
    [[nodiscard]] ScreenPicture capture(const ScreenArea& area, int shrink, bool alsoWhole) override;

    // Uses plain requests from now on, as if memory could not be shared.
    void shareNoMemory() { sharesMemory_ = false; }

private:
    QByteArray display_;
    CapturePatience patience_;
    bool sharesMemory_ = true;
    std::unique_ptr<RootReader> reader_;
    mutable LastPictures last_;
};

} // namespace amberquill::desktop
