#pragma once

#include <QSize>
#include <xcb/xcb.h>

namespace amberquill::desktop {

// What lies behind windows is blurred by compositing managers that understand the property
// _KDE_NET_WM_BLUR_BEHIND_REGION, whose atom `property` is.

// Whether one says so: it lists the property on the root window for as long as it blurs.
[[nodiscard]] bool understandsBlurRegion(xcb_connection_t* connection, xcb_window_t root,
                                         xcb_atom_t property);

// Blurs behind all of a window of that size in device pixels.
void setBlurRegion(xcb_connection_t* connection, xcb_window_t window, xcb_atom_t property,
                   const QSize& pixels);

} // namespace amberquill::desktop
