#include "platform/linux/applications/launching/SuspendedProcess.h"

#include "platform/linux/applications/launching/ChildSetup.h"
#include "platform/linux/files/FileDescriptor.h"

#include <algorithm>
#include <array>
#include <csignal>
#include <fcntl.h>
#include <sys/socket.h>
#include <unistd.h>

namespace amberquill::desktop {

namespace {

// The child uses lower descriptors itself.
constexpr int lowestDescriptor = 10;
// Keeps closing one by one fast where a million descriptors are allowed.
constexpr rlim_t maximumDescriptors = 65536;

// The two ends of a pipe or socket.
struct Channel {
    FileDescriptor reading;
    FileDescriptor writing;
};

FileDescriptor raised(FileDescriptor descriptor) {
    return FileDescriptor(fcntl(descriptor.get(), F_DUPFD_CLOEXEC, lowestDescriptor));
}

std::optional<Channel> channel(int reading, int writing) {
    Channel made{raised(FileDescriptor(reading)), raised(FileDescriptor(writing))};
    if (!made.reading.isOpen() || !made.writing.isOpen()) {
        return std::nullopt;
    }
    return made;
}

std::optional<Channel> makePipe() {
    std::array<int, 2> ends{-1, -1};
    return pipe2(ends.data(), O_CLOEXEC) == 0 ? channel(ends[0], ends[1]) : std::nullopt;
}

// Unlike a pipe, a socket whose reader is gone can be written to without SIGPIPE.
std::optional<Channel> makeSocketPair() {
    std::array<int, 2> ends{-1, -1};
    return socketpair(AF_UNIX, SOCK_STREAM | SOCK_CLOEXEC, 0, ends.data()) == 0 ? channel(ends[0], ends[1])
                                                                                : std::nullopt;
}

// Pointers into `texts` and a final null, as execve takes them.
std::vector<char*> nullTerminatedPointers(std::vector<QByteArray>& texts) {
    std::vector<char*> result;
    result.reserve(texts.size() + 1);
    for (QByteArray& text : texts) {
        result.push_back(text.data());
    }
    result.push_back(nullptr);
    return result;
}

// Blocks all signals on this thread, so that none of our handlers runs in the child.
class SignalsBlocked {
public:
    SignalsBlocked() {
        sigset_t all;
        sigfillset(&all);
        pthread_sigmask(SIG_SETMASK, &all, &before_);
    }
    SignalsBlocked(const SignalsBlocked&) = delete;
    SignalsBlocked& operator=(const SignalsBlocked&) = delete;
    ~SignalsBlocked() { pthread_sigmask(SIG_SETMASK, &before_, nullptr); }

private:
    sigset_t before_{};
};

pid_t forkInto(const ChildSetup& setup) {
    const SignalsBlocked blocked;
    const pid_t id = fork();
    if (id == 0) {
        runChild(setup);
    }
    return id;
}

unsigned int descriptorLimit() {
    rlimit limit{};
    const bool known = getrlimit(RLIMIT_NOFILE, &limit) == 0;
    return static_cast<unsigned int>(known ? std::min(limit.rlim_cur, maximumDescriptors)
                                           : maximumDescriptors);
}

} // namespace

// Sends a byte instead of only closing: another new process may hold a copy of our end open.
void SuspendedProcess::resume() {
    const char byte = 1;
    send(startGate.get(), &byte, sizeof byte, MSG_NOSIGNAL);
    startGate.close();
}

std::optional<SuspendedProcess> startSuspended(const ProcessRequest& request) {
    std::optional<Channel> gate = makeSocketPair();
    std::optional<Channel> outcome = makePipe();
    if (!gate || !outcome) {
        return std::nullopt;
    }

    std::vector<QByteArray> argumentTexts = request.arguments;
    std::vector<QByteArray> environmentTexts = request.environment;
    char* processIdPlace = nullptr;
    if (!request.processIdVariable.isEmpty()) {
        const QByteArray name = request.processIdVariable + '=';
        environmentTexts.push_back(name + QByteArray(processIdRoom, '\0'));
        processIdPlace = environmentTexts.back().data() + name.size();
    }
    const std::vector<char*> arguments = nullTerminatedPointers(argumentTexts);
    const std::vector<char*> environment = nullTerminatedPointers(environmentTexts);
    std::vector<const char*> folders;
    for (const QByteArray& folder : request.workingDirectories) {
        folders.push_back(folder.constData());
    }
    folders.push_back(nullptr);
    const QByteArray& score = request.limits.outOfMemoryScore;

    const ChildSetup setup{
        .program = request.program.constData(),
        .arguments = arguments.data(),
        .environment = environment.data(),
        .processIdPlace = processIdPlace,
        .workingDirectories = folders.data(),
        .limits = &request.limits,
        .restoreOutOfMemoryScore = !score.isEmpty() && InheritedLimits::capture().outOfMemoryScore != score,
        .startGate = gate->reading.get(),
        .outcome = outcome->writing.get(),
        .descriptorLimit = descriptorLimit(),
    };
    const pid_t id = forkInto(setup);
    if (id < 0) {
        return std::nullopt;
    }
    return SuspendedProcess{
        .id = id,
        .process = processDescriptor(id),
        .startGate = std::move(gate->writing),
        .outcome = std::move(outcome->reading),
    };
}

} // namespace amberquill::desktop
