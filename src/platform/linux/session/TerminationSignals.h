#pragma once

#include <QObject>
#include <QSocketNotifier>
#include <functional>

namespace amberquill::desktop {

// Calls `terminate` on the main thread after SIGTERM, SIGINT or SIGHUP, so that the program can end in order.
// One object at a time; constructed after the application object.
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
