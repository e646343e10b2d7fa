#include "platform/linux/applications/launching/ChildReaper.h"

#include "platform/MainQueue.h"

#include <QSocketNotifier>
#include <cerrno>
#include <memory>
#include <sys/wait.h>

namespace amberquill::desktop {

namespace {

constexpr double pollSeconds = 5;

// True when the child has ended and was reaped.
bool reaped(pid_t child) {
    while (true) {
        const pid_t answer = waitpid(child, nullptr, WNOHANG);
        if (answer < 0 && errno == EINTR) {
            continue;
        }
        return answer != 0;
    }
}

} // namespace

ChildReaper::ChildReaper(MainQueue& queue)
    : queue_(queue) {}

void ChildReaper::watch(pid_t child, FileDescriptor process) {
    if (!process.isOpen()) {
        poll(child);
        return;
    }
    auto* const notifier = new QSocketNotifier(process.get(), QSocketNotifier::Read, this);
    const auto open = std::make_shared<FileDescriptor>(std::move(process));
    connect(notifier, &QSocketNotifier::activated, this, [notifier, open, child] {
        if (reaped(child)) {
            notifier->setEnabled(false); // before the descriptor it watches closes with it
            notifier->deleteLater();
        }
    });
}

void ChildReaper::poll(pid_t child) {
    if (reaped(child)) {
        return;
    }
    queue_.thenAfter(context_, pollSeconds, [this, child] { poll(child); });
}

} // namespace amberquill::desktop
