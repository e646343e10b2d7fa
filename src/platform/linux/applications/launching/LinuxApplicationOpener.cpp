#include "platform/linux/applications/launching/LinuxApplicationOpener.h"

#include "platform/MainQueue.h"

#include <QFile>
#include <QLoggingCategory>
#include <utility>

namespace amberquill::desktop {

namespace {

Q_LOGGING_CATEGORY(openerLog, "amberquill.launching", QtCriticalMsg)

ProcessRequest processRequest(const Command& command, const LaunchPlan& plan, const QString& token,
                              const InheritedState& inherited, const QString& home) {
    ProcessRequest request;
    request.program = QFile::encodeName(command.program);
    for (const QString& argument : command.arguments) {
        request.arguments.push_back(argument.toUtf8());
    }
    request.environment = inherited.environment.forChild({
        .token = token.toUtf8(),
        .entryPath = QFile::encodeName(plan.entryPath),
        .workingDirectory = QFile::encodeName(command.workingDirectory),
    });
    if (!plan.entryPath.isEmpty()) {
        request.processIdVariable = "GIO_LAUNCHED_DESKTOP_FILE_PID";
    }
    request.workingDirectories = {QFile::encodeName(command.workingDirectory), QFile::encodeName(home)};
    request.limits = inherited.limits;
    return request;
}

StartupNotice startupNotice(const LaunchPlan& plan, const QString& token) {
    return {
        .id = token,
        .name = plan.name,
        .icon = plan.icon,
        .program = plan.command ? plan.command->program : QString(),
        .windowClass = plan.windowClass,
        .entryPath = plan.entryPath,
    };
}

} // namespace

LinuxApplicationOpener::LinuxApplicationOpener(InheritedState inherited, CurrentBus sessionBus,
                                               StartupNotifications& notifications, MainQueue& queue)
    : inherited_(std::move(inherited))
    , settings_(launchSettingsFrom(inherited_.environment.lookup()))
    , activation_(sessionBus)
    , launcher_(std::move(sessionBus), queue)
    , notifications_(notifications)
    , queue_(queue) {}

void LinuxApplicationOpener::open(const QString& path, const QString& token, Done done) {
    planAndCarryOut([path, settings = settings_] { return planLaunch(path, settings); }, token,
                    std::move(done));
}

void LinuxApplicationOpener::openPage(const QUrl& address, const QString& token, Done done) {
    planAndCarryOut([address, settings = settings_] { return planPage(address, settings); }, token,
                    std::move(done));
}

void LinuxApplicationOpener::planAndCarryOut(std::function<std::optional<LaunchPlan>()> plan,
                                             const QString& token, Done done) {
    queue_.compute(
        context_, std::move(plan),
        [this, token, done = std::move(done)](const std::optional<LaunchPlan>& made) {
            if (made) {
                carryOut(*made, token, done);
            } else {
                done(false);
            }
        },
        Lane::Launch);
}

void LinuxApplicationOpener::carryOut(const LaunchPlan& plan, const QString& token, Done done) {
    if (plan.tellsWhenReady && !token.isEmpty()) {
        notifications_.begin(startupNotice(plan, token));
        done = [this, token, done = std::move(done)](bool started) {
            if (!started) {
                notifications_.cancel(token);
            }
            done(started);
        };
    }
    if (!plan.bus) {
        run(plan, token, std::move(done));
        return;
    }
    activation_.activate(*plan.bus, token, [this, plan, token, done](BusActivationResult result) {
        if (result == BusActivationResult::Unavailable) {
            qCDebug(openerLog) << "not available on the bus, run as a process:" << plan.applicationId;
            run(plan, token, done);
        } else {
            done(result == BusActivationResult::Started);
        }
    });
}

void LinuxApplicationOpener::run(const LaunchPlan& plan, const QString& token, Done done) {
    if (!plan.command) {
        qCDebug(openerLog) << "no command to run instead:" << plan.applicationId;
        done(false);
        return;
    }
    launcher_.launch(processRequest(*plan.command, plan, token, inherited_, settings_.home),
                     plan.applicationId, plan.name, std::move(done));
}

} // namespace amberquill::desktop
