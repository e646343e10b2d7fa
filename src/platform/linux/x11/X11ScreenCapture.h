#pragma once

#include "platform/ScreenCapture.h"

#include <QByteArray>
#include <chrono>
#include <memory>

namespace amberquill::desktop {

class RootReader;

// Reads the root window, in which a server keeps what is seen, whether a compositing manager or the server
// itself has put it together. On a connection of its own, opened when it is first needed: no other request
// waits for the pixels, and a server that does not answer is not waited for. Only from a server on this
// machine; one that runs in a Wayland session without a root window to see has nothing to read.
class X11ScreenCapture final : public ScreenCapture {
public:
    static constexpr std::chrono::milliseconds usualPatience{80};

    // `display`: the server's name; empty for that of the environment. `patience`: for all of a capture.
    explicit X11ScreenCapture(QByteArray display = {}, std::chrono::milliseconds patience = usualPatience);
    ~X11ScreenCapture() override;

    X11ScreenCapture(const X11ScreenCapture&) = delete;
    X11ScreenCapture& operator=(const X11ScreenCapture&) = delete;

    [[nodiscard]] ScreenArea area(const QScreen* screen) const override;
    [[nodiscard]] ScreenPicture capture(const ScreenArea& area, int shrink, bool alsoWhole) override;

    // Reads by plain requests from now on, as where memory cannot be shared.
    void shareNoMemory() { sharesMemory_ = false; }

private:
    QByteArray display_;
    std::chrono::milliseconds patience_;
    bool sharesMemory_ = true;
    std::unique_ptr<RootReader> reader_;
};

} // namespace amberquill::desktop
