#include "platform/linux/applications/launching/LaunchPlan.h"

#include "platform/linux/applications/bundles/BundlePropertyList.h"
#include "platform/linux/applications/entries/EntryIndex.h"
#include "platform/linux/applications/entries/ProgramLookup.h"
#include "platform/linux/applications/launching/ExecLine.h"
#include "platform/linux/applications/launching/Terminal.h"
#include "platform/linux/environment/BaseFolders.h"

#include <QFile>
#include <QFileInfo>
#include <QLoggingCategory>
#include <unistd.h>

namespace amberquill::desktop {

namespace {

using namespace Qt::StringLiterals;

Q_LOGGING_CATEGORY(planLog, "amberquill.launching", QtCriticalMsg)

const QString bundleExtension = u".app"_s;

bool canBeEntered(const QString& folder) {
    return folder.startsWith(u'/') && !folder.contains(QChar::Null) && QFileInfo(folder).isDir() &&
           access(QFile::encodeName(folder).constData(), X_OK) == 0;
}

std::optional<Command> entryCommand(const DesktopEntry& entry, const QString& path,
                                    const LaunchSettings& settings) {
    std::optional<QStringList> arguments = execArguments(entry.exec, {entry.icon, entry.name, path});
    if (!arguments) {
        qCDebug(planLog) << "invalid Exec:" << path;
        return std::nullopt;
    }
    const bool hasFolder = canBeEntered(entry.path);
    if (!hasFolder && !entry.path.isEmpty()) {
        qCDebug(planLog) << "working directory cannot be entered:" << entry.path << path;
    }
    const QString workingDirectory = hasFolder ? entry.path : settings.home;
    const ProgramFinder find = [&](const QString& name) {
        return findProgram(name, settings.entries.programFolders, workingDirectory);
    };
    const std::optional<QString> program = find(arguments->front());
    if (!program) {
        qCDebug(planLog) << "program not found:" << arguments->front() << path;
        return std::nullopt;
    }
    if (!entry.terminal) {
        return Command{*program, *arguments, workingDirectory};
    }
    const std::optional<QStringList> terminal = terminalCommand(find, settings.terminal);
    if (!terminal) {
        qCDebug(planLog) << "no terminal for:" << path;
        return std::nullopt;
    }
    return Command{terminal->front(), *terminal + *arguments, workingDirectory};
}

std::optional<LaunchPlan> planEntry(const QString& path, const LaunchSettings& settings) {
    const std::optional<DesktopEntry> entry = readDesktopEntry(path, settings.entries.locale);
    if (!entry || entry->hidden) {
        qCDebug(planLog) << "missing, invalid or hidden entry:" << path;
        return std::nullopt;
    }
    LaunchPlan plan;
    plan.applicationId = applicationIdFor(path, settings.entries.dataFolders);
    plan.name = entry->name;
    plan.icon = entry->icon;
    plan.windowClass = entry->startupWmClass;
    plan.entryPath = path;
    plan.tellsWhenReady = entry->startupNotify.value_or(false);
    plan.bus = entry->dbusActivatable ? busAddress(plan.applicationId) : std::nullopt;
    plan.command = entryCommand(*entry, path, settings);
    return plan.bus || plan.command ? std::optional(std::move(plan)) : std::nullopt;
}

std::optional<LaunchPlan> planBundle(const QString& path, const LaunchSettings& settings) {
    const std::optional<BundlePropertyList> list = readBundlePropertyList(path);
    if (!list || list->executable.isEmpty()) {
        qCDebug(planLog) << "bundle without an executable:" << path;
        return std::nullopt;
    }
    const QString folder = list->gnustep ? list->folder : pathBelow(list->folder, u"Contents/MacOS");
    const QString program = pathBelow(folder, list->executable);
    if (!isExecutableFile(program)) {
        qCDebug(planLog) << "not executable:" << program;
        return std::nullopt;
    }
    LaunchPlan plan;
    plan.name = QFileInfo(list->folder).fileName().chopped(bundleExtension.size());
    plan.applicationId = list->identifier.isEmpty() ? plan.name : list->identifier;
    plan.command = Command{program, {program}, settings.home};
    return plan;
}

} // namespace

LaunchSettings launchSettingsFrom(const Environment& environment) {
    return {entrySettingsFromEnvironment(environment),
            QFile::decodeName(environment("TERMINAL").value_or(QByteArray())), homeFolder(environment)};
}

std::optional<LaunchPlan> planLaunch(const QString& path, const LaunchSettings& settings) {
    if (path.endsWith(desktopFileExtension)) {
        return planEntry(path, settings);
    }
    if (path.endsWith(bundleExtension)) {
        return planBundle(path, settings);
    }
    qCDebug(planLog) << "neither a desktop entry nor a bundle:" << path;
    return std::nullopt;
}

std::optional<LaunchPlan> planPage(const QUrl& address, const LaunchSettings& settings) {
    if (!address.isValid() || address.scheme() != u"https"_s || address.host().isEmpty()) {
        qCDebug(planLog) << "address refused:" << address;
        return std::nullopt;
    }
    const QString name = u"xdg-open"_s;
    const std::optional<QString> program = findProgram(name, settings.entries.programFolders, settings.home);
    if (!program) {
        qCDebug(planLog) << "program not found:" << name;
        return std::nullopt;
    }
    LaunchPlan plan;
    plan.applicationId = name;
    plan.name = name;
    plan.command = Command{*program, {name, address.toString(QUrl::FullyEncoded)}, settings.home};
    return plan;
}

} // namespace amberquill::desktop
