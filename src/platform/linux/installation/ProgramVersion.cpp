#include "platform/linux/installation/ProgramVersion.h"

#include <QDeadlineTimer>
#include <QProcess>
#include <QThread>
#include <cerrno>

namespace amberquill::desktop {
namespace {

constexpr auto longestWait = std::chrono::seconds(30);
constexpr qint64 longestLine = 256;

// A file that was just written cannot be started while a forked child of this process still has it open.
constexpr int attempts = 10;
constexpr unsigned long millisecondsBetween = 50;

bool start(QProcess& process) {
    for (int attempt = 0; attempt < attempts; ++attempt) {
        process.start(QIODevice::ReadOnly);
        if (process.waitForStarted()) {
            return true;
        }
        if (!process.errorString().contains(qt_error_string(ETXTBSY))) {
            return false;
        }
        QThread::msleep(millisecondsBetween);
    }
    return false;
}

} // namespace

std::optional<QString> versionInLine(const QByteArray& line) {
    const QString text = QString::fromUtf8(line).trimmed();
    constexpr QLatin1StringView name("Amberquill ");
    const QString version = text.mid(name.size()).trimmed();
    const bool isOne = text.startsWith(name) && !version.isEmpty() && !version.contains(QLatin1Char('\n'));
    return isOne ? std::optional(version) : std::nullopt;
}

std::optional<QString> versionOfProgram(const QByteArray& path, const std::vector<QByteArray>& environment) {
    QProcess process;
    process.setProgram(QString::fromUtf8(path));
    process.setArguments({QStringLiteral("--version")});
    QStringList entries;
    for (const QByteArray& entry : environment) {
        entries += QString::fromLocal8Bit(entry);
    }
    process.setEnvironment(entries);
    process.setStandardInputFile(QProcess::nullDevice());
    process.setStandardErrorFile(QProcess::nullDevice());
    if (!start(process)) {
        return std::nullopt;
    }
    const QDeadlineTimer deadline(longestWait);
    while (process.state() != QProcess::NotRunning && process.bytesAvailable() <= longestLine &&
           !deadline.hasExpired()) {
        process.waitForReadyRead(static_cast<int>(deadline.remainingTime()));
    }
    if (process.state() != QProcess::NotRunning) {
        process.kill();
        process.waitForFinished();
        return std::nullopt;
    }
    const bool isDone = process.exitStatus() == QProcess::NormalExit && process.exitCode() == 0;
    return isDone ? versionInLine(process.read(longestLine)) : std::nullopt;
}

} // namespace amberquill::desktop
