#include "platform/linux/applications/icons/workers/WorkerProcess.h"

#include "platform/common/Thread.h"
#include "platform/linux/decoder/channel/DecodingMessages.h"
#include "platform/linux/files/FileDescriptor.h"

#include <algorithm>
#include <cerrno>
#include <csignal>
#include <ctime>
#include <fcntl.h>
#include <spawn.h>
#include <sys/wait.h>

namespace amberquill::desktop {

namespace {

// How long a killed process is waited for. It takes longer only if the system itself hangs.
constexpr std::chrono::milliseconds killTimeout{200};

class FileActions {
public:
    explicit FileActions(int socket) {
        ::posix_spawn_file_actions_init(&actions_);
        ::posix_spawn_file_actions_adddup2(&actions_, socket, decoderSocket);
        for (const int output : {STDOUT_FILENO, STDERR_FILENO}) {
            ::posix_spawn_file_actions_addopen(&actions_, output, "/dev/null", O_WRONLY, 0);
        }
        // Our descriptors close on exec. Those of libraries may not.
        ::posix_spawn_file_actions_addclosefrom_np(&actions_, STDERR_FILENO + 1);
    }
    FileActions(const FileActions&) = delete;
    FileActions& operator=(const FileActions&) = delete;
    ~FileActions() { ::posix_spawn_file_actions_destroy(&actions_); }

    [[nodiscard]] const posix_spawn_file_actions_t* get() const { return &actions_; }

private:
    posix_spawn_file_actions_t actions_{};
};

class Attributes {
public:
    Attributes() {
        ::posix_spawnattr_init(&attributes_);
        sigset_t signals;
        ::sigemptyset(&signals);
        ::posix_spawnattr_setsigmask(&attributes_, &signals);
        ::sigfillset(&signals);
        ::posix_spawnattr_setsigdefault(&attributes_, &signals);
        ::posix_spawnattr_setflags(&attributes_,
                                   POSIX_SPAWN_SETSIGMASK | POSIX_SPAWN_SETSIGDEF | POSIX_SPAWN_SETSID);
    }
    Attributes(const Attributes&) = delete;
    Attributes& operator=(const Attributes&) = delete;
    ~Attributes() { ::posix_spawnattr_destroy(&attributes_); }

    [[nodiscard]] const posix_spawnattr_t* get() const { return &attributes_; }

private:
    posix_spawnattr_t attributes_{};
};

// Pointers into `texts` and a final null, as system calls take them.
std::vector<char*> nullTerminated(std::vector<std::string>& texts) {
    std::vector<char*> result(texts.size() + 1, nullptr);
    std::transform(texts.begin(), texts.end(), result.begin(), [](std::string& text) { return text.data(); });
    return result;
}

WorkerProcess::End endOf(int status) {
    if (WIFSIGNALED(status)) {
        switch (WTERMSIG(status)) {
        case SIGKILL:
        case SIGTERM:
        case SIGINT:
        case SIGHUP:
            return WorkerProcess::End::FromOutside;
        default:
            break;
        }
    }
    return WorkerProcess::End::ByItself;
}

} // namespace

std::unique_ptr<WorkerProcess> WorkerProcess::start(const WorkerProgram& program,
                                                    const std::vector<std::string>& arguments,
                                                    const FileDescriptor& socket) {
    const FileActions actions(socket.get());
    const Attributes attributes;
    auto variables = program.environment;
    const auto environment = nullTerminated(variables);
    int error = ENOENT;
    for (const auto& path : program.paths) {
        std::vector<std::string> words{path};
        words.insert(words.end(), arguments.begin(), arguments.end());
        pid_t id = -1;
        error = ::posix_spawn(&id, path.c_str(), actions.get(), attributes.get(),
                              nullTerminated(words).data(), environment.data());
        if (error == 0) {
            return std::make_unique<WorkerProcess>(id, processDescriptor(id));
        }
    }
    errno = error;
    return nullptr;
}

WorkerProcess::WorkerProcess(pid_t id, FileDescriptor end)
    : id_(id)
    , end_(std::move(end)) {}

WorkerProcess::~WorkerProcess() {
    if (isReaped_) {
        return;
    }
    kill();
    if (endsBefore(QDeadlineTimer(killTimeout))) {
        static_cast<void>(reap());
    } else {
        // Without a thread the zombie stays until this program ends.
        static_cast<void>(startThread([id = id_] { ::waitpid(id, nullptr, 0); }));
    }
}

void WorkerProcess::kill() {
    const std::lock_guard lock(mutex_);
    if (!isReaped_) {
        ::kill(id_, SIGKILL);
    }
}

std::optional<WorkerProcess::End> WorkerProcess::waitForEnd(QDeadlineTimer deadline) {
    if (!end_.isOpen()) {
        kill(); // nothing would report its end
    } else if (!isReadableBy(end_.get(), deadline)) {
        kill();
        return std::nullopt;
    }
    return endOf(reap());
}

// Also true if the end cannot be observed.
bool WorkerProcess::endsBefore(QDeadlineTimer deadline) const {
    return !end_.isOpen() || isReadableBy(end_.get(), deadline);
}

// Waits without the lock, so that kill() can end the process meanwhile.
int WorkerProcess::reap() {
    siginfo_t about = {};
    while (::waitid(P_PID, static_cast<id_t>(id_), &about, WEXITED | WNOWAIT) != 0 && errno == EINTR) {
    }
    const std::lock_guard lock(mutex_);
    isReaped_ = true;
    int status = 0;
    return ::waitpid(id_, &status, WNOHANG) == id_ ? status : 0;
}

std::chrono::nanoseconds processorTimeOf(pid_t process) {
    clockid_t clock = {};
    timespec time = {};
    if (::clock_getcpuclockid(process, &clock) != 0 || ::clock_gettime(clock, &time) != 0) {
        return {};
    }
    return std::chrono::seconds(time.tv_sec) + std::chrono::nanoseconds(time.tv_nsec);
}

} // namespace amberquill::desktop
