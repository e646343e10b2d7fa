#include "platform/linux/applications/launching/ProcessLauncher.h"

#include <QLoggingCategory>
#include <QSocketNotifier>
#include <cerrno>
#include <cstring>
#include <memory>
#include <unistd.h>
#include <utility>

namespace amberquill::desktop {

namespace {

Q_LOGGING_CATEGORY(processLog, "amberquill.launching", QtCriticalMsg)

// The error number with which the program failed to start; 0: it runs.
int startError(int outcome) {
    int error = 0;
    while (true) {
        const ssize_t count = read(outcome, &error, sizeof error);
        if (count < 0 && errno == EINTR) {
            continue;
        }
        if (count == 0) {
            return 0;
        }
        return count == sizeof error && error != 0 ? error : EIO;
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
        qCDebug(processLog) << "no process for" << request.program << std::strerror(errno);
        done(false);
        return;
    }
    reaper_.watch(started->id, std::move(started->process));
    awaitOutcome(std::move(started->outcome), request.program, std::move(done));
    const auto suspended = std::make_shared<SuspendedProcess>(*std::move(started));
    scope_.place(suspended->id, id, description, [suspended] { suspended->resume(); });
}

void ProcessLauncher::awaitOutcome(FileDescriptor outcome, const QByteArray& program,
                                   std::function<void(bool running)> done) {
    auto* const notifier = new QSocketNotifier(outcome.get(), QSocketNotifier::Read, this);
    const auto open = std::make_shared<FileDescriptor>(std::move(outcome));
    connect(notifier, &QSocketNotifier::activated, this, [notifier, open, program, done = std::move(done)] {
        notifier->setEnabled(false); // before the descriptor it watches closes with it
        notifier->deleteLater();
        const int error = startError(open->get());
        if (error != 0) {
            qCDebug(processLog) << "not started:" << program << std::strerror(error);
        }
        done(error == 0);
    });
}

} // namespace amberquill::desktop
