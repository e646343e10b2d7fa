#pragma once

#include <span>
#include <string>

namespace amberquill::desktop {

// Takes from the calling thread, and from the threads that it starts later, every access to files but reading
// those named and what is in the folders named, and where the kernel can, the network and other programs'
// abstract sockets as well. What is open stays open. Paths that are not there count for nothing. For good.
// False: this kernel has no Landlock, or will have no more of it; nothing changed.
[[nodiscard]] bool restrictFiles(std::span<const std::string> readable);

} // namespace amberquill::desktop
