#include "platform/linux/applications/launching/ProcessLauncher.h"

#include <QSocketNotifier>
#include <cerrno>
#include <memory>
#include <unistd.h>
#include <utility>

namespace amberquill::desktop {

namespace {

// Whether the program runs: then the pipe has no data, else it has the error number.
bool succeeded(int outcome) {
    int error = 0;
    while (true) {
        const ssize_t count = read(outcome, &error, sizeof error);
        if (count < 0 && errno == EINTR) {
            continue;
        }
        return count == 0;
    }
}

} // namespace

ProcessLauncher::ProcessLauncher(CurrentBus sessionBus, MainQueue& queue)
    : scope_(std::move(sessionBus), queue)
    , reaper_(queue) {}

void ProcessLauncher::launch(const ProcessRequest& request, const QString& id, const QString& description,
                             std::function<void(bool running)> done) {
    std::optional<SuspendedProcess> started = startSuspended(request);
    if (!started) {
        done(false);
        return;
    }
    reaper_.watch(started->id, std::move(started->process));
    awaitOutcome(std::move(started->outcome), std::move(done));
    const auto suspended = std::make_shared<SuspendedProcess>(*std::move(started));
    scope_.place(suspended->id, id, description, [suspended] { suspended->resume(); });
}

void ProcessLauncher::awaitOutcome(FileDescriptor outcome, std::function<void(bool running)> done) {
    auto* const notifier = new QSocketNotifier(outcome.get(), QSocketNotifier::Read, this);
    const auto open = std::make_shared<FileDescriptor>(std::move(outcome));
    connect(notifier, &QSocketNotifier::activated, this, [notifier, open, done = std::move(done)] {
        notifier->setEnabled(false); // before the descriptor it watches closes with it
        notifier->deleteLater();
        done(succeeded(open->get()));
    });
}

} // namespace amberquill::desktop
