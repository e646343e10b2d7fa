// platform/linux/graphics/: finds out whether a hardware GPU draws for the launcher. If not, main() chooses
// Qt's software renderer, which is faster than OpenGL emulated on the CPU.
//
// Parts: GraphicsFindings, the facts and the rule (pure), and the environment variables; RenderNodes, the
// GPUs that the kernel offers; ServerOffers, the display server's extensions; HardwareGpu combines them.
//
// Rules: runs once, before the application object exists, so without Qt's window system. Opens only GPUs of
// virtual machines: opening wakes a GPU that is powered down. Asks the server only if there is a GPU at all.
// Log: amberquill.graphics.
#pragma once

#include <QLoggingCategory>

namespace amberquill::desktop {

Q_DECLARE_LOGGING_CATEGORY(graphicsLog)

// Whether a hardware GPU would draw for the launcher on its display. False: OpenGL would be emulated on the
// CPU, which is far slower than Qt's software renderer.
[[nodiscard]] bool hasHardwareGpu();

} // namespace amberquill::desktop
