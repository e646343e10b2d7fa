#pragma once

#include "platform/linux/applications/launching/ChildReaper.h"
#include "platform/linux/applications/launching/HeldProcess.h"
#include "platform/linux/applications/launching/SystemdScope.h"

#include <QObject>
#include <functional>

namespace amberquill {
class MainQueue;
}

namespace amberquill::desktop {

// Starts processes that live on their own, each in its own scope where there is a manager for that, and looks
// after their end. Main thread only; the processes outlive it.
class ProcessLauncher final : public QObject {
    Q_OBJECT

public:
    ProcessLauncher(CurrentBus sessionBus, MainQueue& queue);

    // `id` and `description` are the scope's. `done` is called once: true when the program runs.
    void launch(const ProcessRequest& request, const QString& id, const QString& description,
                std::function<void(bool running)> done);

private:
    void awaitOutcome(FileDescriptor outcome, std::function<void(bool running)> done);

    SystemdScope scope_;
    ChildReaper reaper_;
};

} // namespace amberquill::desktop
