#pragma once

#include "platform/linux/applications/icons/workers/WorkerProgram.h"
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

// A child process that decodes icons. It leads a session of its own, so that no key in our terminal reaches
// it, and it stays in our control group, so that it ends with us. Its standard input is one end of a socket
// (decoderSocket), its output is /dev/null, and no signal is handled or blocked. Any thread, but one at a
// time; kill() at any time.
class WorkerProcess {
public:
    enum class End {
        ByItself,    // a crash, a limit of its own, any exit status
        FromOutside, // a signal by which users and systems end processes
    };

    // Null: errno says why it cannot be started.
    [[nodiscard]] static std::unique_ptr<WorkerProcess> start(const WorkerProgram& program,
                                                              const std::vector<std::string>& arguments,
                                                              const FileDescriptor& socket);
    // `end` is its processDescriptor().
    WorkerProcess(pid_t id, FileDescriptor end);
    WorkerProcess(const WorkerProcess&) = delete;
    WorkerProcess& operator=(const WorkerProcess&) = delete;
    // Kills and reaps the process.
    ~WorkerProcess();

    // While this object lives, no other process has this number.
    [[nodiscard]] pid_t id() const { return id_; }

    void kill();

    // Waits for the process's end until `deadline`. None: it had not ended by then, and was killed. On
    // kernels without process descriptors it is killed at once, and the answer is FromOutside unless it had
    // ended.
    [[nodiscard]] std::optional<End> waitForEnd(QDeadlineTimer deadline);

private:
    [[nodiscard]] bool endsBefore(QDeadlineTimer deadline) const;
    [[nodiscard]] int reap();

    const pid_t id_;
    const FileDescriptor end_;
    std::mutex mutex_; // a reaped process must not be killed: its number may be another's by then
    bool isReaped_ = false;
};

// The processor time of all threads of a child process. Zero: unknown.
[[nodiscard]] std::chrono::nanoseconds processorTimeOf(pid_t process);

} // namespace amberquill::desktop
