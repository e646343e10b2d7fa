#pragma once

#include "platform/MainQueue.h"
#include "platform/linux/dbus/CurrentBus.h"

#include <QDBusConnection>
#include <QDBusObjectPath>
#include <QObject>
#include <QString>
#include <QStringView>
#include <functional>
#include <map>
#include <sys/types.h>

namespace amberquill::desktop {

// A text as it stands in a unit's name: what systemd-escape answers.
[[nodiscard]] QString systemdEscaped(QStringView text);

// The name of the unit that one start of an application runs in, by systemd's convention for desktops:
// app-<launcher>-<application>-<random>.scope. Never longer than a unit's name may be. `random` tells two
// starts of the same application apart.
[[nodiscard]] QString scopeName(QStringView applicationId, quint64 random);

// Puts processes into units of their own, where a systemd user manager answers on the session bus: the end
// of the launcher, or of the memory it may use, is then not theirs, and portals know who they are. Main
// thread only.
class SystemdScope final : public QObject {
    Q_OBJECT

public:
    SystemdScope(CurrentBus sessionBus, MainQueue& queue);

    // Moves the process, which waits for it, into a scope. `then` is called once, in any case: when it is
    // there, when there can be none, or when the manager takes too long. `description` is for people.
    void place(pid_t process, const QString& applicationId, const QString& description,
               std::function<void()> then);

private Q_SLOTS:
    void jobRemoved(uint number, const QDBusObjectPath& job, const QString& unit, const QString& result);

private:
    struct Waiting {
        std::function<void()> then;
        DelayedWork limit;
    };

    void listen(bool on);
    void finish(const QString& unit);

    CurrentBus sessionBus_;
    QDBusConnection bus_; // while somebody waits
    MainQueue& queue_;
    std::map<QString, Waiting> waiting_; // by unit
};

} // namespace amberquill::desktop
