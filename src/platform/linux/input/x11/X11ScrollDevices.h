#pragma once

#include "platform/ScrollDevices.h"

#include <array>
#include <optional>
#include <xcb/xcb.h>

namespace amberquill::desktop {

// Distinguishes an X server's pointing devices by their drivers' device properties (XInput 2), because Qt 6.4
// reports all of them as mice. A device that no driver calls a touchpad is a wheel.
class X11ScrollDevices final : public ScrollDevices {
public:
    // The connection outlives this object.
    explicit X11ScrollDevices(xcb_connection_t* connection);

    // One round trip.
    [[nodiscard]] ScrollDevice device(qint64 systemId) const override;

private:
    // The atoms of the properties' names.
    struct Names {
        xcb_atom_t scrollMethods; // of libinput
        xcb_atom_t pixelDistance; // of libinput
        xcb_atom_t synaptics;
    };

    [[nodiscard]] const std::optional<Names>& names() const;

    xcb_connection_t* connection_;
    mutable bool asked_ = false;
    mutable std::optional<Names> names_; // none: the server has no XInput, or the connection is lost
};

} // namespace amberquill::desktop
