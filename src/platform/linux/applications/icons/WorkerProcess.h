#pragma once

#include "platform/linux/files/FileDescriptor.h"

#include <QDeadlineTimer>
#include <chrono>
#include <memory>
#include <mutex>
#include <optional>
#include <string>
#include <sys/types.h>
#include <vector>

namespace amberquill::desktop {

// The program of the processes that decode icons.
struct WorkerProgram {
    std::vector<std::string> paths;       // where it may be: the first that can be started is
    std::vector<std::string> environment; // all that it is told: NAME=value
};

// A process that decodes icons, as its parent has it: it leads a session of its own, so that no key in our
// terminal reaches it, and it stays in our control group, so that it ends where all of ours is ended. It has
// one end of a socket as decoderSocket, nothing but /dev/null beside it, and no signal handled or blocked.
// Any thread, but one at a time; kill() at any time.
class WorkerProcess {
public:
    enum class End {
        Own,     // by itself: a fault, a limit of its own, an exit whatever it says
        Foreign, // by a signal of those that somebody ends processes with
    };

    // Null: errno says why it cannot be started.
    [[nodiscard]] static std::unique_ptr<WorkerProcess> start(const WorkerProgram& program,
                                                              const std::vector<std::string>& arguments,
                                                              const FileDescriptor& socket);
    // `end` is its processDescriptor().
    WorkerProcess(pid_t id, FileDescriptor end);
    WorkerProcess(const WorkerProcess&) = delete;
    WorkerProcess& operator=(const WorkerProcess&) = delete;
    // Ends it, and leaves no zombie.
    ~WorkerProcess();

    // While this lives, no other process has this number.
    [[nodiscard]] pid_t id() const { return id_; }

    void kill();

    // Waits no longer than that for its end. None: it has not ended by itself, and was killed now. On kernels
    // without process descriptors it is killed at once, and its end is Foreign unless it had ended before.
    [[nodiscard]] std::optional<End> endBy(QDeadlineTimer deadline);

private:
    [[nodiscard]] bool isSeenToEndBy(QDeadlineTimer deadline) const;
    [[nodiscard]] int reap();

    const pid_t id_;
    const FileDescriptor end_;
    std::mutex mutex_; // what is reaped must not be killed: another may have its number
    bool isReaped_ = false;
};

// What all threads of a child process have used up of processor time. Zero where the system does not say.
[[nodiscard]] std::chrono::nanoseconds processorTimeOf(pid_t process);

} // namespace amberquill::desktop
