#pragma once

#include "platform/ApplicationOpener.h"
#include "platform/linux/applications/launching/BusActivation.h"
#include "platform/linux/applications/launching/InheritedState.h"
#include "platform/linux/applications/launching/LaunchPlan.h"
#include "platform/linux/applications/launching/ProcessLauncher.h"
#include "platform/linux/applications/launching/StartupNotifications.h"

#include <functional>
#include <memory>
#include <optional>

namespace amberquill {
class MainQueue;
}

namespace amberquill::desktop {

// launching/: opens the applications of a Linux desktop. A desktop file (its path ends in `.desktop`) is read
// again at that moment, and its application asked for over the session bus or run as a process of its own; a
// bundle (`.app`) has its executable run. An application outlives the launcher and knows nothing of it.
//
// Nothing here waits: the disk is read in the background, and the bus answers when it does. When the opener
// is destroyed first, a start that is under way goes on, but its `done` is not called.
class LinuxApplicationOpener final : public ApplicationOpener {
public:
    // `start` is what main() has captured before anything else. The queue and the notifications outlive the
    // opener. A bus that is not connected counts as a desktop without one.
    LinuxApplicationOpener(InheritedState start, CurrentBus sessionBus, StartupNotifications& notifications,
                           MainQueue& queue);

    void open(const QString& path, const QString& token, std::function<void(bool started)> done) override;
    void openPage(const QUrl& address, const QString& token, std::function<void(bool started)> done) override;

private:
    using Done = std::function<void(bool started)>;

    void planAndCarryOut(std::function<std::optional<LaunchPlan>()> plan, const QString& token, Done done);
    void carryOut(const LaunchPlan& plan, const QString& token, Done done);
    void run(const LaunchPlan& plan, const QString& token, Done done);

    InheritedState start_;
    LaunchContext context_;
    BusActivation activation_;
    ProcessLauncher launcher_;
    StartupNotifications& notifications_;
    MainQueue& queue_;
    std::shared_ptr<void> life_ = std::make_shared<char>(); // what background work holds weakly
};

} // namespace amberquill::desktop
