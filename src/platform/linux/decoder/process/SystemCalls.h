#pragma once

namespace amberquill::desktop {

enum class FileReading { Denied, Allowed };

// Leaves all threads of the process only the system calls that decoding takes: memory that holds no programs,
// threads, messages over the socket it was started with, clocks. With `Allowed` also those that read files,
// of which there should then be few (see restrictFiles). Any other ends the process (SIGSYS), but for those
// that libraries try without need, which fail. For good. False: nothing changed.
[[nodiscard]] bool restrictSystemCalls(FileReading reading);

} // namespace amberquill::desktop
