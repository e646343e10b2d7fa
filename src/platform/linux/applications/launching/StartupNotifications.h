#pragma once

#include <QString>

namespace amberquill::desktop {

// The start of an application, for task bars and busy pointers.
struct StartupNotice {
    QString id; // the activation token
    QString name;
    QString icon;
    QString program;
    QString windowClass; // of its windows; empty: unknown
    QString entryPath;
};

// Announces to the desktop that an application is starting. The application itself announces when it is
// ready. Main thread only.
class StartupNotifications {
public:
    StartupNotifications() = default;
    StartupNotifications(const StartupNotifications&) = delete;
    StartupNotifications& operator=(const StartupNotifications&) = delete;
    virtual ~StartupNotifications() = default;

    virtual void begin(const StartupNotice& notice) = 0;

    // The start failed.
    virtual void cancel(const QString& id) = 0;
};

class NullStartupNotifications final : public StartupNotifications {
public:
    void begin(const StartupNotice&) override {}
    void cancel(const QString&) override {}
};

} // namespace amberquill::desktop
