#pragma once

#include "platform/ScreenCapture.h"
#include "platform/linux/capture/LastPictures.h"

#include <QByteArray>
#include <chrono>
#include <memory>

namespace amberquill::desktop {

class OutputReader;

// Has a compositor copy an output. Uses its own connection, opened at the first capture; all waits are
// bounded.
class WlrScreenCapture final : public ScreenCapture {
public:
    // The compositor copies when it next draws the output, usually within a sixtieth of a second.
    static constexpr std::chrono::milliseconds usualPatience{80};

    // `display`: the compositor's socket; empty: $WAYLAND_DISPLAY. `patience`: for a whole capture.
    explicit WlrScreenCapture(QByteArray display = {}, std::chrono::milliseconds patience = usualPatience);
    ~WlrScreenCapture() override;

    WlrScreenCapture(const WlrScreenCapture&) = delete;
    WlrScreenCapture& operator=(const WlrScreenCapture&) = delete;

    // With the output's name. A null screen: no name (capture asks the compositor for its choice), and the
    // pixels of the primary screen.
    [[nodiscard]] ScreenArea area(const QScreen* screen) const override;
    [[nodiscard]] ScreenPicture capture(const ScreenArea& area, int shrink, bool alsoWhole) override;

private:
    QByteArray display_;
    std::chrono::milliseconds patience_;
    std::unique_ptr<OutputReader> reader_;
    mutable LastPictures last_;
};

} // namespace amberquill::desktop
