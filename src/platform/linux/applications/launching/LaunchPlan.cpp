#include "platform/linux/applications/launching/LaunchPlan.h"

#include "platform/linux/applications/bundles/BundlePropertyList.h"
#include "platform/linux/applications/entries/EntryIndex.h"
#include "platform/linux/applications/entries/ProgramLookup.h"
#include "platform/linux/applications/launching/ExecLine.h"
#include "platform/linux/applications/launching/Terminal.h"
#include "platform/linux/environment/BaseFolders.h"

#include <QFile>
#include <QFileInfo>
#include <unistd.h>

namespace amberquill::desktop {

namespace {

using namespace Qt::StringLiterals;

const QString bundleExtension = u".app"_s;

bool canBeEntered(const QString& folder) {
    return folder.startsWith(u'/') && !folder.contains(QChar::Null) && QFileInfo(folder).isDir() &&
           access(QFile::encodeName(folder).constData(), X_OK) == 0;
}

std::optional<Command> entryCommand(const DesktopEntry& entry, const QString& path,
                                    const LaunchContext& context) {
    std::optional<QStringList> arguments = execArguments(entry.exec, {entry.icon, entry.name, path});
    if (!arguments) {
        return std::nullopt;
    }
    const QString workingDirectory = canBeEntered(entry.path) ? entry.path : context.home;
    const ProgramFinder find = [&](const QString& name) {
        return findProgram(name, context.entries.programFolders, workingDirectory);
    };
    const std::optional<QString> program = find(arguments->front());
    if (!program) {
        return std::nullopt;
    }
    if (!entry.terminal) {
        return Command{*program, *arguments, workingDirectory};
    }
    const std::optional<QStringList> terminal = terminalCommand(find, context.terminal);
    if (!terminal) {
        return std::nullopt;
    }
    return Command{terminal->front(), *terminal + *arguments, workingDirectory};
}

std::optional<LaunchPlan> planEntry(const QString& path, const LaunchContext& context) {
    const std::optional<DesktopEntry> entry = readDesktopEntry(path, context.entries.locale);
    if (!entry || entry->hidden) {
        return std::nullopt;
    }
    LaunchPlan plan;
    plan.applicationId = applicationIdFor(path, context.entries.dataFolders);
    plan.name = entry->name;
    plan.icon = entry->icon;
    plan.windowClass = entry->startupWmClass;
    plan.entryPath = path;
    plan.tellsWhenReady = entry->startupNotify.value_or(false);
    plan.bus = entry->dbusActivatable ? busAddress(plan.applicationId) : std::nullopt;
    plan.command = entryCommand(*entry, path, context);
    return plan.bus || plan.command ? std::optional(std::move(plan)) : std::nullopt;
}

std::optional<LaunchPlan> planBundle(const QString& path, const LaunchContext& context) {
    const std::optional<BundlePropertyList> list = readBundlePropertyList(path);
    if (!list || list->executable.isEmpty()) {
        return std::nullopt;
    }
    const QString folder = list->gnustep ? list->folder : pathBelow(list->folder, u"Contents/MacOS");
    const QString program = pathBelow(folder, list->executable);
    if (!isExecutableFile(program)) {
        return std::nullopt;
    }
    LaunchPlan plan;
    plan.name = QFileInfo(list->folder).fileName().chopped(bundleExtension.size());
    plan.applicationId = list->identifier.isEmpty() ? plan.name : list->identifier;
    plan.command = Command{program, {program}, context.home};
    return plan;
}

} // namespace

LaunchContext launchContextFrom(const Environment& environment) {
    return {entrySettingsFromEnvironment(environment),
            QFile::decodeName(environment("TERMINAL").value_or(QByteArray())), homeFolder(environment)};
}

std::optional<LaunchPlan> planLaunch(const QString& path, const LaunchContext& context) {
    if (path.endsWith(desktopFileExtension)) {
        return planEntry(path, context);
    }
    if (path.endsWith(bundleExtension)) {
        return planBundle(path, context);
    }
    return std::nullopt;
}

std::optional<LaunchPlan> planPage(const QUrl& address, const LaunchContext& context) {
    if (!address.isValid() || address.scheme() != u"https"_s || address.host().isEmpty()) {
        return std::nullopt;
    }
    const QString name = u"xdg-open"_s;
    const std::optional<QString> program = findProgram(name, context.entries.programFolders, context.home);
    if (!program) {
        return std::nullopt;
    }
    LaunchPlan plan;
    plan.applicationId = name;
    plan.name = name;
    plan.command = Command{*program, {name, address.toString(QUrl::FullyEncoded)}, context.home};
    return plan;
}

} // namespace amberquill::desktop
