#pragma once

#include <QLoggingCategory>
#include <QString>
#include <QStringList>
#include <string>

namespace amberquill {

// Records what is logged while this exists, under these rules for categories.
class LogRecorder {
public:
    explicit LogRecorder(const QString& rules) {
        lines().clear();
        QLoggingCategory::setFilterRules(rules);
        before_ = qInstallMessageHandler(
            [](QtMsgType, const QMessageLogContext&, const QString& line) { lines() += line; });
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
