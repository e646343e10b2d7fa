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
    QStringList arguments; // the first is argv[0]
    QString workingDirectory;

    bool operator==(const Command&) const = default;
};

// How an application is opened: over the bus, by a command, or both; then the command is the fallback.
struct LaunchPlan {
    QString applicationId; // the desktop file's id without its ending, or the bundle's identifier
    QString name;
    QString icon;
    QString windowClass;
    QString entryPath;           // empty for a bundle
    bool tellsWhenReady = false; // supports startup notification
    std::optional<BusAddress> bus;
    std::optional<Command> command;
};

// The desktop's settings that plans depend on.
struct LaunchSettings {
    EntrySettings entries;
    QString terminal; // the user's preferred one; empty: none
    QString home;
};

[[nodiscard]] LaunchSettings launchSettingsFrom(const Environment& environment);

// Reads the application at `path`, a desktop file or a bundle, and decides how to open it. None: it cannot be
// opened. Reads the disk; any thread.
[[nodiscard]] std::optional<LaunchPlan> planLaunch(const QString& path, const LaunchSettings& settings);

// The same for a web page, which `xdg-open` shows in the user's browser. None also for an address that is not
// https. Reads the disk; any thread.
[[nodiscard]] std::optional<LaunchPlan> planPage(const QUrl& address, const LaunchSettings& settings);

} // namespace amberquill::desktop
