#pragma once

#include <QtGlobal>

namespace amberquill {

// What scrolls, as the desktop knows it.
struct ScrollDevice {
    enum class Kind {
        Unknown, // an event's own data must tell
        Wheel,
        Touchpad,
    };

    Kind kind = Kind::Unknown;
    // How far fingers move on it for what counts as a wheel's notch: a tenth of a notch is a point where Qt
    // computes the one from the other.
    double pointsPerNotch = 10;

    bool operator==(const ScrollDevice&) const = default;
};

// Tells touchpads from wheels where Qt does not. Main thread only.
class ScrollDevices {
public:
    ScrollDevices() = default;
    ScrollDevices(const ScrollDevices&) = delete;
    ScrollDevices& operator=(const ScrollDevices&) = delete;
    virtual ~ScrollDevices() = default;

    // The device with Qt's number (QInputDevice::systemId) for it. The answer may change as devices come and
    // go: asked at the beginning of each movement.
    [[nodiscard]] virtual ScrollDevice device(qint64 systemId) const = 0;
};

class NullScrollDevices final : public ScrollDevices {
public:
    [[nodiscard]] ScrollDevice device(qint64) const override { return {}; }
};

} // namespace amberquill
