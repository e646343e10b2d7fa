#pragma once

#include <QObject>
#include <QSocketNotifier>
#include <functional>

namespace amberquill::desktop {

// Takes SIGTERM, SIGINT and SIGHUP to the main thread: `terminate` is called there, so that the program can
// end in order. One object at a time; made after the application object.
class TerminationSignals final : public QObject {
    Q_OBJECT

public:
    explicit TerminationSignals(std::function<void()> terminate);
    ~TerminationSignals() override;

    TerminationSignals(const TerminationSignals&) = delete;
    TerminationSignals& operator=(const TerminationSignals&) = delete;

private:
    std::function<void()> terminate_;
    QSocketNotifier notifier_;
};

} // namespace amberquill::desktop
