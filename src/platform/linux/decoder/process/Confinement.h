#pragma once

#include "platform/linux/decoder/process/SystemCalls.h"

#include <chrono>
#include <cstdint>

namespace amberquill::desktop {

// What the process may use up of processor time before it says that a picture was its last. No limit that
// ends it is ever met by a harmless file.
inline constexpr std::chrono::seconds decoderEndurance{10};

// The most processor time that one picture takes, should the launcher not end it before.
inline constexpr std::chrono::seconds longestDecoding{10};

// The most memory it has, in bytes: its libraries, an 8 MB file, the largest picture that a file may hold (32
// million pixels), that picture converted, and what is made of it.
inline constexpr std::int64_t decoderMemory = std::int64_t{1024} * 1024 * 1024;

// The signals that end it do so, whatever the program that started it made of them; and it has no descriptors
// but the socket and the two outputs. For the start of main(). False: some signals may still be handled,
// ignored or blocked.
[[nodiscard]] bool dropInheritance();

// Has the kernel end this process rather than any other when memory runs short. It can be started again.
void offerMemoryFirst();

// Has what was used for one picture go back to the system before the next.
void keepLittleMemory();

// Gives up, for good, all that decoding does not take: privileges, resources, system calls. restrictFiles()
// comes before. False: not all of it.
[[nodiscard]] bool confine(FileReading reading);

} // namespace amberquill::desktop
