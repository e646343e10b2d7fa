#pragma once

#include <QLoggingCategory>
#include <QString>
#include <QStringList>

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

} // namespace amberquill
