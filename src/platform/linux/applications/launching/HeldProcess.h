#pragma once

#include "platform/linux/applications/launching/StartLimits.h"
#include "platform/linux/files/FileDescriptor.h"

#include <QByteArray>
#include <optional>
#include <sys/types.h>
#include <vector>

namespace amberquill::desktop {

// Everything about a process to be, as the kernel will see it.
struct ProcessRequest {
    QByteArray program;                  // a path; a relative one is looked for in the working directory
    std::vector<QByteArray> arguments;   // the first is the program's name as it sees it
    std::vector<QByteArray> environment; // NAME=value
    QByteArray processIdVariable;        // a variable that is to hold the process's own number; empty: none
    std::vector<QByteArray> workingDirectories; // the first that can be entered is; none: the root folder
    StartLimits limits;
};

// A process that is all set to become the program and waits for the word. It leads a session of its own, has
// none of our files open, none of our signal handlers or mask and the limits of our start. It reads from
// nothing; what it writes goes where ours goes, if that can neither refuse it nor be kept waiting by it.
//
// Should the launcher end before the word is given, the process goes ahead: its start has been asked for.
struct HeldProcess {
    pid_t id = -1;
    FileDescriptor process; // its processDescriptor()
    FileDescriptor hold;    // what the word is given through
    FileDescriptor outcome; // ends without a byte when the program runs; `int`, the error number, when not

    // Gives the word. Once; harmless when the process has ended.
    void release();
};

// Main thread or any other. None: the system refuses another process.
[[nodiscard]] std::optional<HeldProcess> startHeld(const ProcessRequest& request);

} // namespace amberquill::desktop
