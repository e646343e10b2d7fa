#pragma once

#include "platform/linux/applications/entries/DesktopEntryApplications.h"
#include "platform/linux/applications/launching/BusActivation.h"

#include <QString>
#include <QStringList>
#include <QUrl>
#include <optional>

namespace amberquill::desktop {

// A command as it will be run.
struct Command {
    QString program;       // absolute
    QStringList arguments; // the first is the program's name as it sees it
    QString workingDirectory;

    bool operator==(const Command&) const = default;
};

// What opening an application comes to. At least one of `bus` and `command` is there; where both are, the
// command is for when the bus cannot help.
struct LaunchPlan {
    QString applicationId; // the desktop file's id without its ending, or the bundle's identifier
    QString name;
    QString icon;
    QString windowClass;
    QString entryPath;           // empty for a bundle
    bool tellsWhenReady = false; // completes startup notifications
    std::optional<BusAddress> bus;
    std::optional<Command> command;
};

// What a plan depends on beside the application itself.
struct LaunchContext {
    EntrySettings entries;
    QString terminal; // the user's preferred one; empty: none
    QString home;
};

[[nodiscard]] LaunchContext launchContextFrom(const Environment& environment);

// Reads the application at `path`, a desktop file or a bundle, and works out how to open it. None: it cannot
// be opened. Reads the disk; any thread.
[[nodiscard]] std::optional<LaunchPlan> planLaunch(const QString& path, const LaunchContext& context);

// The same for a page of the web, which the desktop's `xdg-open` takes to the user's browser. None also for
// an address that is not one of https. Reads the disk; any thread.
[[nodiscard]] std::optional<LaunchPlan> planPage(const QUrl& address, const LaunchContext& context);

} // namespace amberquill::desktop
