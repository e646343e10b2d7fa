#include "Report.h"

#include "support/TestPaths.h"
#include "support/WaitUntil.h"

#include <QFile>
#include <QFileInfo>

namespace amberquill {

namespace {

void add(Report& report, const QByteArray& key, const QByteArray& value) {
    if (key == "argument") {
        report.arguments += QString::fromUtf8(value);
    } else if (key == "variable") {
        const qsizetype sign = value.indexOf('=');
        report.variables.insert(value.first(sign), value.sliced(sign + 1));
    } else if (key.startsWith("descriptor")) {
        report.descriptors.insert(key.sliced(10).toInt(), value);
    } else if (key.startsWith("nonblocking")) {
        report.nonBlocking.insert(key.sliced(11).toInt(), value == "yes");
    } else if (key == "SigBlk") {
        report.blockedSignals = value;
    } else if (key == "SigIgn") {
        report.ignoredSignals = value;
    } else if (key == "oom") {
        report.outOfMemoryScore = value;
    } else if (key == "folder") {
        report.folder = value;
    } else if (key == "process") {
        report.process = value.toLongLong();
    } else if (key == "session") {
        report.session = value.toLongLong();
    } else if (key == "files") {
        report.fileLimit = value.toULongLong();
    }
}

} // namespace

std::optional<Report> awaitReport(const QString& path) {
    QFile file(path);
    if (!waitUntil([&file] { return file.exists(); }) || !file.open(QIODevice::ReadOnly)) {
        return std::nullopt;
    }
    Report report;
    const QList<QByteArray> lines = file.readAll().split('\n');
    for (const QByteArray& line : lines) {
        const qsizetype space = line.indexOf(' ');
        if (space > 0) {
            add(report, line.first(space), QByteArray::fromHex(line.sliced(space + 1)));
        }
    }
    report.programName = report.arguments.takeFirst().toUtf8();
    report.arguments.removeFirst();
    return report;
}

QString reporterPath() {
    return testProgram(QStringLiteral("launch_reporter"));
}

QString reporterLine(const QString& reportPath, const QString& arguments) {
    return QStringLiteral("\"%1\" \"%2\" %3").arg(reporterPath(), reportPath, arguments);
}

bool processExists(qint64 process) {
    return QFileInfo::exists(QStringLiteral("/proc/%1").arg(process));
}

} // namespace amberquill
