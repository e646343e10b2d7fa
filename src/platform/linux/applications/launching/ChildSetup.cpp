#include "platform/linux/applications/launching/ChildSetup.h"

#include <array>
#include <cerrno>
#include <csignal>
#include <fcntl.h>
#include <limits>
#include <sys/stat.h>
#include <unistd.h>

namespace amberquill::desktop {

namespace {

constexpr int outcomeDescriptor = 3;
constexpr int gateDescriptor = 4;
constexpr unsigned int firstClosed = 5;

void resetSignals() {
    struct sigaction standard {};
    standard.sa_handler = SIG_DFL;
    for (int signal = 1; signal < NSIG; ++signal) {
        sigaction(signal, &standard, nullptr); // fails for SIGKILL and SIGSTOP, which have no handlers
    }
    sigset_t none;
    sigemptyset(&none);
    sigprocmask(SIG_SETMASK, &none, nullptr);
}

void redirectToNull(int stream, int mode) {
    const int null = open("/dev/null", mode);
    if (null >= 0 && null != stream) {
        dup2(null, stream);
        close(null);
    }
}

// Whether the application may write to our stream. Not to a stream that does not block: writes would fail
// while the reader is slow. Not to a pipe: its reader may wait for EOF, which the application would withhold,
// or may end with us, and SIGPIPE would kill the application. A descriptor that closes on exec is another
// file of ours, in the place of a missing standard stream.
bool canBeShared(int stream) {
    struct stat about {};
    const int mode = fcntl(stream, F_GETFL);
    const int flags = fcntl(stream, F_GETFD);
    return mode >= 0 && (mode & O_NONBLOCK) == 0 && flags >= 0 && (flags & FD_CLOEXEC) == 0 &&
           fstat(stream, &about) == 0 && !S_ISFIFO(about.st_mode);
}

void prepareStreams() {
    redirectToNull(STDIN_FILENO, O_RDONLY);
    for (const int stream : {STDOUT_FILENO, STDERR_FILENO}) {
        if (!canBeShared(stream)) {
            redirectToNull(stream, O_WRONLY);
        }
    }
}

void closeOthers(const ChildSetup& setup) {
    dup3(setup.outcome, outcomeDescriptor, O_CLOEXEC);
    dup3(setup.startGate, gateDescriptor, O_CLOEXEC);
    if (close_range(firstClosed, std::numeric_limits<unsigned int>::max(), 0) != 0) {
        closeOneByOne(firstClosed, setup.descriptorLimit);
    }
}

void restoreLimits(const ChildSetup& setup) {
    for (std::size_t i = 0; i < setup.limits->resources.size(); ++i) {
        if (const auto& limit = setup.limits->resources[i]) {
            setrlimit(static_cast<__rlimit_resource_t>(i), &*limit);
        }
    }
    if (setup.restoreOutOfMemoryScore) {
        const int file = open("/proc/self/oom_score_adj", O_WRONLY | O_CLOEXEC);
        if (file >= 0) {
            const QByteArray& score = setup.limits->outOfMemoryScore;
            [[maybe_unused]] const auto written =
                write(file, score.constData(), static_cast<std::size_t>(score.size()));
            close(file);
        }
    }
}

void enterWorkingDirectory(const ChildSetup& setup) {
    for (const char* const* folder = setup.workingDirectories; *folder != nullptr; ++folder) {
        if (chdir(*folder) == 0) {
            return;
        }
    }
    [[maybe_unused]] const int entered = chdir("/");
}

void writeProcessId(char* place) {
    auto rest = static_cast<unsigned int>(getpid());
    std::array<char, processIdRoom> digits{};
    std::size_t count = 0;
    do {
        digits[count++] = static_cast<char>('0' + rest % 10);
        rest /= 10;
    } while (rest != 0 && count < processIdRoom - 1);
    while (count > 0) {
        *place++ = digits[--count];
    }
    *place = '\0';
}

void waitAtStartGate() {
    char byte = 0;
    while (read(gateDescriptor, &byte, 1) < 0 && errno == EINTR) {
    }
}

} // namespace

void closeOneByOne(unsigned int first, unsigned int limit) {
    for (unsigned int descriptor = first; descriptor < limit; ++descriptor) {
        close(static_cast<int>(descriptor));
    }
}

void runChild(const ChildSetup& setup) {
    resetSignals();
    setsid();
    // Early: our copies of another starting process's descriptors withhold the EOF that it waits for.
    closeOthers(setup);
    prepareStreams();
    restoreLimits(setup);
    enterWorkingDirectory(setup);
    if (setup.processIdPlace != nullptr) {
        writeProcessId(setup.processIdPlace);
    }
    waitAtStartGate();
    execve(setup.program, setup.arguments, setup.environment);
    const int error = errno;
    [[maybe_unused]] const auto written = write(outcomeDescriptor, &error, sizeof error);
    _exit(127);
}

} // namespace amberquill::desktop
