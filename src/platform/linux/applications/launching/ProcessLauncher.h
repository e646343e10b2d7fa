#pragma once

#include "platform/linux/applications/launching/ChildReaper.h"
#include "platform/linux/applications/launching/SuspendedProcess.h"
#include "platform/linux/applications/launching/SystemdScope.h"

#include <QObject>
#include <functional>

namespace amberquill {
class MainQueue;
}

namespace amberquill::desktop {

// Starts processes, each in a scope of its own if systemd manages the session, and reaps them. Main thread
// only; the processes outlive this object.
class ProcessLauncher final : public QObject {
    Q_OBJECT

public:
    ProcessLauncher(CurrentBus sessionBus, MainQueue& queue);

    // `id` and `description` are for the scope. `done` is called once: true when the program runs.
    void launch(const ProcessRequest& request, const QString& id, const QString& description,
                std::function<void(bool running)> done);

private:
    void awaitOutcome(FileDescriptor outcome, const QByteArray& program,
                      std::function<void(bool running)> done);

    SystemdScope scope_;
    ChildReaper reaper_;
};

} // namespace amberquill::desktop
