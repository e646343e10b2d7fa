#pragma once

#include "platform/linux/applications/launching/InheritedState.h"
#include "platform/linux/files/FileDescriptor.h"

#include <QByteArray>
#include <optional>
#include <sys/types.h>
#include <vector>

namespace amberquill::desktop {

// The parameters of a new process.
struct ProcessRequest {
    QByteArray program;                  // a path; a relative one is looked for in the working directory
    std::vector<QByteArray> arguments;   // the first is argv[0]
    std::vector<QByteArray> environment; // NAME=value
    QByteArray processIdVariable;        // set to the new process's own number; empty: none
    std::vector<QByteArray> workingDirectories; // the first that can be entered; none: the root folder
    InheritedLimits limits;
};

// A new process that waits at its start gate before it executes the program. It leads a session of its own,
// has no open files, signal handlers or signal mask of ours, and the limits that the launcher was started
// with. Its input is empty. Its output goes where ours goes, unless that could block or break it (a pipe, a
// stream that does not block).
//
// If the launcher ends before resume(), the process executes the program: the start was asked for.
struct SuspendedProcess {
    pid_t id = -1;
    FileDescriptor process;   // its processDescriptor()
    FileDescriptor startGate; // start gate: the process goes on after one byte or EOF
    FileDescriptor outcome;   // EOF when the program runs; else an `int`, the error number

    // Opens the start gate. Called once; harmless when the process has ended.
    void resume();
};

// Any thread. None: the system refuses another process.
[[nodiscard]] std::optional<SuspendedProcess> startSuspended(const ProcessRequest& request);

} // namespace amberquill::desktop
