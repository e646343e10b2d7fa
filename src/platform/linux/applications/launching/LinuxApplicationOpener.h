// applications/launching/: opens applications and web pages, and answers whether that worked. Applications
// outlive the launcher.
//
// - LinuxApplicationOpener carries out a start: begin reading here.
// - LaunchPlan decides how. A desktop entry (`.desktop`) is read again at that moment, and its application
//   activated over the session bus (BusActivation) or run as a process. A bundle (`.app`) has its executable
//   run. ExecLine splits and expands `Exec`, Terminal finds a terminal.
// - ProcessLauncher runs a process: SuspendedProcess forks it, up to a start gate; ChildSetup is its code
//   between fork and exec; SystemdScope moves it into a unit of its own; ChildReaper reaps it.
// - InheritedState is the environment and the limits the launcher was started with. Applications get these,
//   so main() captures them first.
// - StartupNotifications tells task bars. Its implementations are in activation/.
//
// An application is never started twice: a command is the fallback only if the bus certainly did not deliver
// the request. No shell is used. Bounds: 48 KiB for an Exec line, 128 KiB for its arguments, 1 s for a
// systemd scope, 130 s for an activation. The log category amberquill.launching names each failed start, with
// the reason.
#pragma once

#include "platform/ApplicationOpener.h"
#include "platform/Context.h"
#include "platform/linux/applications/launching/BusActivation.h"
#include "platform/linux/applications/launching/InheritedState.h"
#include "platform/linux/applications/launching/LaunchPlan.h"
#include "platform/linux/applications/launching/ProcessLauncher.h"
#include "platform/linux/applications/launching/StartupNotifications.h"

#include <functional>
#include <optional>

namespace amberquill {
class MainQueue;
}

namespace amberquill::desktop {

// Opens applications and web pages. Never blocks: the disk is read in the background, and the bus answers
// later. If the opener is destroyed meanwhile, a start that is under way goes on, but its `done` is not
// called.
class LinuxApplicationOpener final : public ApplicationOpener {
public:
    // `inherited` is captured at the start of main(). The queue and the notifications outlive the opener.
    // Without a connected bus, applications are run as processes.
    LinuxApplicationOpener(InheritedState inherited, CurrentBus sessionBus,
                           StartupNotifications& notifications, MainQueue& queue);

    void open(const QString& path, const QString& token, std::function<void(bool started)> done) override;
    void openPage(const QUrl& address, const QString& token, std::function<void(bool started)> done) override;

private:
    using Done = std::function<void(bool started)>;

    void planAndCarryOut(std::function<std::optional<LaunchPlan>()> plan, const QString& token, Done done);
    void carryOut(const LaunchPlan& plan, const QString& token, Done done);
    void run(const LaunchPlan& plan, const QString& token, Done done);

    InheritedState inherited_;
    LaunchSettings settings_;
    BusActivation activation_;
    ProcessLauncher launcher_;
    StartupNotifications& notifications_;
    MainQueue& queue_;
    Context context_;
};

} // namespace amberquill::desktop
