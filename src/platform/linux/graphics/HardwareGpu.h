// platform/linux/graphics/: whether a hardware GPU draws for the launcher. If none does, main() chooses Qt's
// software renderer, which is faster than OpenGL emulated on the processor.
//
// Parts: GraphicsFindings, the values and the rule (pure), with what the environment says; RenderNodes, the
// GPUs that the kernel offers; HardwareGpu puts them together and asks the display server for its extensions.
//
// Rules: runs once, before the application object, so without Qt's window system. Opens no GPU but a virtual
// machine's: opening wakes a GPU that is powered down. The server is asked only if there is a GPU at all.
// Log: amberquill.graphics.
#pragma once

#include <QLoggingCategory>

namespace amberquill::desktop {

Q_DECLARE_LOGGING_CATEGORY(graphicsLog)

// Whether a hardware GPU would draw for the launcher on the display it is started on; false where OpenGL
// would be emulated on the CPU, which is far slower than Qt's software renderer. Asks the environment, the
// kernel and, if there is a GPU at all, the display server. Called once, before the application object
// exists.
[[nodiscard]] bool hasHardwareGpu();

} // namespace amberquill::desktop
