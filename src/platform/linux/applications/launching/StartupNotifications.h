#pragma once

#include <QString>

namespace amberquill::desktop {

// One start of an application, as a task bar or a busy pointer shows it.
struct StartupNotice {
    QString id; // the activation token
    QString name;
    QString icon;
    QString program;
    QString windowClass; // which windows belong to it; empty: unknown
    QString entryPath;
};

// Tells the desktop that an application is on its way, for applications that say themselves when they have
// arrived. Main thread only.
class StartupNotifications {
public:
    StartupNotifications() = default;
    StartupNotifications(const StartupNotifications&) = delete;
    StartupNotifications& operator=(const StartupNotifications&) = delete;
    virtual ~StartupNotifications() = default;

    virtual void begin(const StartupNotice& notice) = 0;

    // It will not arrive.
    virtual void cancel(const QString& id) = 0;
};

class NullStartupNotifications final : public StartupNotifications {
public:
    void begin(const StartupNotice&) override {}
    void cancel(const QString&) override {}
};

} // namespace amberquill::desktop
