#include "platform/linux/session/TerminationSignals.h"

#include <array>
#include <atomic>
#include <cerrno>
#include <csignal>
#include <cstdint>
#include <sys/eventfd.h>
#include <unistd.h>

namespace amberquill::desktop {

namespace {

constexpr std::array terminating = {SIGTERM, SIGINT, SIGHUP};

// The descriptor that the handler writes to. Global, because a handler has no other access to it.
std::atomic<int> wakeUp = -1;

extern "C" void noteSignal(int /*signal*/) {
    const int savedError = errno;
    constexpr std::uint64_t one = 1;
    [[maybe_unused]] const ssize_t written = ::write(wakeUp.load(), &one, sizeof one);
    errno = savedError;
}

int makeWakeUp() {
    wakeUp = ::eventfd(0, EFD_CLOEXEC | EFD_NONBLOCK);
    return wakeUp;
}

void handle(void (*handler)(int)) {
    struct sigaction action = {};
    action.sa_handler = handler;
    action.sa_flags = SA_RESTART;
    ::sigemptyset(&action.sa_mask);
    for (const int signal : terminating) {
        ::sigaction(signal, &action, nullptr);
    }
}

} // namespace

TerminationSignals::TerminationSignals(std::function<void()> terminate)
    : terminate_(std::move(terminate))
    , notifier_(makeWakeUp(), QSocketNotifier::Read) {
    connect(&notifier_, &QSocketNotifier::activated, this, [this] {
        std::uint64_t count = 0;
        if (::read(wakeUp, &count, sizeof count) == sizeof count) {
            terminate_();
        }
    });
    handle(noteSignal);
}

TerminationSignals::~TerminationSignals() {
    handle(SIG_DFL);
    notifier_.setEnabled(false);
    ::close(wakeUp.exchange(-1));
}

} // namespace amberquill::desktop
