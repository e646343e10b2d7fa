#pragma once

#include <QtGlobal>

namespace amberquill {

// A device that scrolls, as described by the desktop.
struct ScrollDevice {
    enum class Kind {
        Unknown, // only the event's own data tells
        Wheel,
        Touchpad,
    };

    Kind kind = Kind::Unknown;
    // How far fingers move on it for the equivalent of a wheel's notch. Where Qt converts one into the other,
    // a point is a tenth of a notch.
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

    // The device with this QInputDevice::systemId. Devices come and go, so this is asked at the beginning of
    // each movement.
    [[nodiscard]] virtual ScrollDevice device(qint64 systemId) const = 0;
};

class NullScrollDevices final : public ScrollDevices {
public:
    [[nodiscard]] ScrollDevice device(qint64) const override { return {}; }
};

} // namespace amberquill
