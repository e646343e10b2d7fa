#pragma once

namespace amberquill::desktop {

// Whether a hardware GPU would draw for the launcher on the display it is started on; false where OpenGL
// would be emulated on the CPU, which is far slower than Qt's software renderer. Asks the environment, the
// kernel and, if there is a GPU at all, the display server. Called once, before the application object
// exists.
[[nodiscard]] bool hasHardwareGpu();

} // namespace amberquill::desktop
