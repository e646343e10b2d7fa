// platform/linux/capture/: pictures of a screen's content, for the backdrop behind the launcher.
//
// Parts, from the bottom:
// - PixelLayout: a server's pixel format. ScreenRows: builds the small picture row by row, so that the large
//   one need not exist. Both are pure functions of values.
// - LastPictures: the last small picture of each screen, shown when a screen cannot be read in time.
// - x11/: RootReader reads the root window, through shared memory if the server has it. X11ScreenCapture is
//   the ScreenCapture built on it.
// - wayland/: OutputReader has the compositor copy an output (wlr-screencopy). OutputChoice finds out which
//   output the compositor would choose. StoredFrame decodes the copy. WlrScreenCapture is the ScreenCapture.
//
// Rules: each capture has its own connection, so that no other request waits for the pixels. A capture runs
// on a background thread, one at a time, and is bounded: 240 ms on X11, 80 ms under Wayland. All data from a
// server is checked before use. Log: amberquill.capture.
#pragma once

#include "platform/ScreenCapture.h"

#include <QLoggingCategory>
#include <memory>

namespace amberquill::desktop {

Q_DECLARE_LOGGING_CATEGORY(captureLog)

// The capture for the window system that the application object runs on. Never null. Captures nothing if the
// program runs on Xwayland, whose root window does not show the session's windows.
[[nodiscard]] std::unique_ptr<ScreenCapture> makeScreenCapture();

} // namespace amberquill::desktop
