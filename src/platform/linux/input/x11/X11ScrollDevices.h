#pragma once

#include "platform/ScrollDevices.h"

#include <array>
#include <optional>
#include <xcb/xcb.h>

namespace amberquill::desktop {

// Pointing devices of an X server, told apart by the properties that their drivers give them (XInput 2): Qt
// 6.4 takes all of them for mice. A device that no driver calls a touchpad is a wheel.
class X11ScrollDevices final : public ScrollDevices {
public:
    // The connection outlives it.
    explicit X11ScrollDevices(xcb_connection_t* connection);

    // One round trip.
    [[nodiscard]] ScrollDevice device(qint64 systemId) const override;

private:
    // The names of the properties, as numbers.
    struct Names {
        xcb_atom_t scrollMethods; // of libinput
        xcb_atom_t pixelDistance; // of libinput
        xcb_atom_t synaptics;
    };

    [[nodiscard]] const std::optional<Names>& names() const;

    xcb_connection_t* connection_;
    mutable bool asked_ = false;
    mutable std::optional<Names> names_; // none: the server has no XInput, or has gone
};

} // namespace amberquill::desktop
