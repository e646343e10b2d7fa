#pragma once

namespace amberquill::desktop {

// What a display server offers to clients that draw on a GPU. `reached` is false if there is no server.
struct ServerOffers {
    bool reached = false;
    bool takesGpuBuffers = false;
    bool hasNvidiaGlx = false;
};

// The X server of $DISPLAY: its extensions. One connection, one round trip.
[[nodiscard]] ServerOffers askX11Server();

// The compositor of $WAYLAND_DISPLAY: its globals. One connection, one round trip.
[[nodiscard]] ServerOffers askWaylandCompositor();

} // namespace amberquill::desktop
