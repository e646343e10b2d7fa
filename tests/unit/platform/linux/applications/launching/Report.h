#pragma once

#include <QByteArray>
#include <QHash>
#include <QStringList>
#include <optional>

namespace amberquill {

// The launched program's report on itself.
struct Report {
    QStringList arguments; // all but the program's name and the report's path
    QByteArray programName;
    QHash<QByteArray, QByteArray> variables;
    QHash<int, QByteArray> descriptors; // the target of each open one
    QHash<int, bool> nonBlocking;
    QByteArray blockedSignals; // masks in hexadecimal digits
    QByteArray ignoredSignals;
    QByteArray outOfMemoryScore;
    QByteArray folder;
    qint64 process = 0;
    qint64 session = 0;
    quint64 fileLimit = 0;
};

// Waits for the report at `path`. None: timeout.
std::optional<Report> awaitReport(const QString& path);

// The program that writes reports, and an `Exec` line that runs it.
QString reporterPath();
QString reporterLine(const QString& reportPath, const QString& arguments = {});

// Whether there is such a process, even a zombie.
bool processExists(qint64 process);

} // namespace amberquill
