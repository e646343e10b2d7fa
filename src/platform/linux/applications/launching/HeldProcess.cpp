#include "platform/linux/applications/launching/HeldProcess.h"

#include "platform/linux/applications/launching/ChildSetup.h"
#include "platform/linux/files/ProcessDescriptor.h"

#include <algorithm>
#include <array>
#include <csignal>
#include <fcntl.h>
#include <sys/socket.h>
#include <unistd.h>

namespace amberquill::desktop {

namespace {

// Below it the child arranges its own descriptors.
constexpr int lowestDescriptor = 10;
// Closing one by one must end even where a million descriptors are allowed.
constexpr rlim_t mostDescriptors = 65536;

// What comes out of `reading` went into `writing`.
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

// Unlike a pipe, one can write to it without a signal when the reader has gone.
std::optional<Channel> makeSocketPair() {
    std::array<int, 2> ends{-1, -1};
    return socketpair(AF_UNIX, SOCK_STREAM | SOCK_CLOEXEC, 0, ends.data()) == 0 ? channel(ends[0], ends[1])
                                                                                : std::nullopt;
}

// The texts as execve wants them. They point into `texts`, which outlives the answer.
std::vector<char*> pointers(std::vector<QByteArray>& texts) {
    std::vector<char*> result;
    result.reserve(texts.size() + 1);
    for (QByteArray& text : texts) {
        result.push_back(text.data());
    }
    result.push_back(nullptr);
    return result;
}

// While it lives no signal is handled on this thread, so that none of our handlers runs in the child.
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
    return static_cast<unsigned int>(known ? std::min(limit.rlim_cur, mostDescriptors) : mostDescriptors);
}

} // namespace

// A word that is said, not only a closed end: a copy of our end in some other new process would keep it open.
void HeldProcess::release() {
    const char word = 1;
    send(hold.get(), &word, sizeof word, MSG_NOSIGNAL);
    hold.close();
}

std::optional<HeldProcess> startHeld(const ProcessRequest& request) {
    std::optional<Channel> hold = makeSocketPair();
    std::optional<Channel> outcome = makePipe();
    if (!hold || !outcome) {
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
    const std::vector<char*> arguments = pointers(argumentTexts);
    const std::vector<char*> environment = pointers(environmentTexts);
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
        .restoreOutOfMemoryScore = !score.isEmpty() && StartLimits::capture().outOfMemoryScore != score,
        .hold = hold->reading.get(),
        .outcome = outcome->writing.get(),
        .descriptorLimit = descriptorLimit(),
    };
    const pid_t id = forkInto(setup);
    if (id < 0) {
        return std::nullopt;
    }
    return HeldProcess{
        .id = id,
        .process = processDescriptor(id),
        .hold = std::move(hold->writing),
        .outcome = std::move(outcome->reading),
    };
}

} // namespace amberquill::desktop
