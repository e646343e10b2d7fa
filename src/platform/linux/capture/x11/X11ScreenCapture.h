#pragma once

#include "platform/ScreenCapture.h"
#include "platform/linux/capture/LastPictures.h"

#include <QByteArray>
#include <chrono>
#include <memory>

namespace amberquill::desktop {

class RootReader;

// How long a server is waited for: for each of its answers, for all of a capture, and for what stands in for
// one.
struct CapturePatience {
    std::chrono::milliseconds forEach{80};
    std::chrono::milliseconds forAll{240};
    std::chrono::milliseconds forSubstitute{80};
};

// Reads the root window, in which a server keeps what is seen, whether a compositing manager or the server
// itself has put it together. On a connection of its own, opened when it is first needed: no other request
// waits for the pixels, and a server that does not answer is not waited for. Only from a server on this
// machine; one that runs in a Wayland session without a root window to see has nothing to read.
class X11ScreenCapture final : public ScreenCapture {
public:
    // `display`: the server's name; empty for that of the environment.
    explicit X11ScreenCapture(QByteArray display = {}, const CapturePatience& patience = {});
    ~X11ScreenCapture() override;

    X11ScreenCapture(const X11ScreenCapture&) = delete;
    X11ScreenCapture& operator=(const X11ScreenCapture&) = delete;

    [[nodiscard]] ScreenArea area(const QScreen* screen) const override;
    [[nodiscard]] ScreenPicture capture(const ScreenArea& area, int shrink, bool alsoWhole) override;

    // Reads by plain requests from now on, as where memory cannot be shared.
    void shareNoMemory() { sharesMemory_ = false; }

private:
    QByteArray display_;
    CapturePatience patience_;
    bool sharesMemory_ = true;
    std::unique_ptr<RootReader> reader_;
    mutable LastPictures last_;
};

} // namespace amberquill::desktop
