#pragma once

#include <QLoggingCategory>
#include <QString>
#include <QStringList>
#include <mutex>
#include <string>

namespace amberquill {

// Records the log lines, as they would be printed, under these rules for categories.
class LogRecorder {
public:
    explicit LogRecorder(const QString& rules) {
        lines().clear();
        QLoggingCategory::setFilterRules(rules);
        before_ = qInstallMessageHandler(record);
    }
    ~LogRecorder() {
        qInstallMessageHandler(before_);
        QLoggingCategory::setFilterRules({});
    }

    LogRecorder(const LogRecorder&) = delete;
    LogRecorder& operator=(const LogRecorder&) = delete;

    static QStringList& lines() {
        static QStringList theLines;
        return theLines;
    }

private:
    // Other threads log as well.
    static void record(QtMsgType type, const QMessageLogContext& context, const QString& line) {
        static std::mutex mutex;
        const std::scoped_lock lock(mutex);
        lines() += qFormatLogMessage(type, context, line);
    }

    QtMessageHandler before_;
};

// The lines of the category that are logged while `work` runs, each with a line end.
template<typename Work>
[[nodiscard]] std::string debugLog(const char* category, const Work& work) {
    const LogRecorder recorder(QString::fromLatin1(category) + QStringLiteral("=true"));
    work();
    std::string text;
    for (const QString& line : LogRecorder::lines()) {
        text += line.toStdString() + '\n';
    }
    return text;
}

} // namespace amberquill
