#pragma once

#include <span>
#include <string>

namespace amberquill::desktop {

// Restricts the calling thread, and threads that it starts later, to reading the files in `readable` and
// below the folders in it. Where the kernel supports it, also denies the network and other programs' abstract
// sockets. Open descriptors stay usable. Missing paths are ignored. Cannot be undone. False: the kernel has
// no Landlock, or refused; nothing changed.
[[nodiscard]] bool restrictFiles(std::span<const std::string> readable);

} // namespace amberquill::desktop
