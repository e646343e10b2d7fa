#pragma once

#include <QImage>
#include <xcb/xcb.h>

namespace amberquill::desktop {

// What is seen at an X window that another program has taken into one of its own, with what that shows behind
// it. In device pixels; transparent where the outermost window is. Null where the window is taken in nowhere,
// or not all of it is seen, or nothing can be read. Waits for the server's answers.
[[nodiscard]] QImage embeddedPicture(xcb_connection_t* connection, xcb_window_t window);

} // namespace amberquill::desktop
