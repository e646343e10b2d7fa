#pragma once

#include "platform/ScreenCapture.h"
#include "platform/linux/capture/LastPictures.h"

#include <QByteArray>
#include <chrono>
#include <memory>

namespace amberquill::desktop {

class OutputReader;

// Has a compositor copy an output. On a connection of its own, opened when it is first needed: a compositor
// that does not answer is not waited for.
class WlrScreenCapture final : public ScreenCapture {
public:
    // A copy is made when the output is next drawn, a sixtieth of a second later as a rule.
    static constexpr std::chrono::milliseconds usualPatience{80};

    // `display`: the compositor's socket; empty for that of the environment. `patience`: for all of a
    // capture.
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
