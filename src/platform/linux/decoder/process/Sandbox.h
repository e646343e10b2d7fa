// decoder/process/: the program amberquill-icons, which decodes icons for the launcher in a sandbox. It reads
// requests from its standard input, a socket, and answers them until the launcher closes the socket.
//
// - main.cpp has the order of the steps: begin reading here.
// - Sandbox resets inherited state, sets limits and gives up privileges.
// - Landlock restricts files, SystemCallFilter the system calls. One process of two may read fonts.
// - RequestLoop answers the requests (decoder/channel) by decodedIcon() (decoder/pictures).
//
// Everything a library loads is loaded before the sandbox closes; after that no file is opened but fonts. A
// forbidden system call ends the process with SIGSYS. Limits: 10 s of processor time for a picture, 10 s for
// all pictures until the process is replaced, 1 GiB of memory, 16 descriptors. A process that cannot be
// sandboxed exits without decoding. It does not log.
#pragma once

#include "platform/linux/decoder/process/SystemCallFilter.h"

#include <chrono>
#include <cstdint>

namespace amberquill::desktop {

// The processor time after which the process sends its last answer and exits. Harmless files meet no limit
// that kills the process.
inline constexpr std::chrono::seconds decoderProcessorBudget{10};

// The processor time for one picture, if the launcher does not end the process before.
inline constexpr std::chrono::seconds pictureProcessorBudget{10};

// The limit of the address space, in bytes. Enough for the libraries, an 8 MB file, the largest picture in a
// file (32 million pixels), that picture converted, and the result.
inline constexpr std::int64_t decoderMemory = std::int64_t{1024} * 1024 * 1024;

// Resets the signals that end the process, and closes all inherited descriptors but the socket and the two
// outputs. For the start of main(). False: some signals may still be ignored or blocked.
[[nodiscard]] bool resetInheritedState();

// Makes the kernel kill this process first when memory runs out: the launcher can start it again.
void preferOutOfMemoryKill();

// Makes malloc return a picture's memory to the system before the next picture.
void limitHeap();

// Gives up everything that decoding does not need: privileges, resources, system calls. Cannot be undone.
// Called after restrictFiles(). False: the sandbox is incomplete.
[[nodiscard]] bool enterSandbox(FileReading reading);

} // namespace amberquill::desktop
