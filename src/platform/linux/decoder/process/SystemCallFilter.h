#pragma once

namespace amberquill::desktop {

enum class FileReading { Denied, Allowed };

// Allows all threads only the system calls that decoding needs: memory that is not executable, threads,
// messages over the inherited socket, clocks. With `Allowed` also the calls that read files, which
// restrictFiles() should limit. Calls that libraries make without need fail; any other ends the process
// (SIGSYS). Cannot be undone. False: nothing changed.
[[nodiscard]] bool restrictSystemCalls(FileReading reading);

} // namespace amberquill::desktop
