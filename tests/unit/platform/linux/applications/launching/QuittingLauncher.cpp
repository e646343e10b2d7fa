// A launcher that opens the application at its second argument and then ends in the way of its first one.
#include "platform/linux/applications/launching/LinuxApplicationOpener.h"
#include "platform/linux/queue/EventLoopQueue.h"

#include <QCoreApplication>
#include <QFile>
#include <csignal>
#include <unistd.h>

using namespace amberquill;
using namespace amberquill::desktop;
using namespace Qt::StringLiterals;

namespace {

// Quits once the application runs.
int quitAfterOpening(const InheritedState& start, const QString& path) {
    EventLoopQueue queue;
    NullStartupNotifications notifications;
    LinuxApplicationOpener opener(
        start, [] { return QDBusConnection(u"none"_s); }, notifications, queue);
    opener.open(path, {}, [](bool started) { QCoreApplication::exit(started ? 0 : 1); });
    return QCoreApplication::exec();
}

// Is killed before the start gate opens.
int dieWhileHolding(const InheritedState& start, const QString& program, const QString& report) {
    ProcessRequest request;
    request.program = QFile::encodeName(program);
    request.arguments = {"reporter", QFile::encodeName(report), "--stay"};
    request.environment = start.environment.forChild({});
    request.limits = start.limits;
    const auto suspended = startSuspended(request);
    kill(getpid(), SIGKILL);
    return 1;
}

} // namespace

int main(int argc, char** argv) {
    const InheritedState start = InheritedState::capture();
    QCoreApplication application(argc, argv);
    const QStringList arguments = QCoreApplication::arguments();
    if (arguments.value(1) == u"quit") {
        return quitAfterOpening(start, arguments.value(2));
    }
    return dieWhileHolding(start, arguments.value(2), arguments.value(3));
}
