#pragma once

#include "platform/MainQueue.h"
#include "platform/linux/dbus/AsyncBusConnector.h"

#include <QDBusArgument>
#include <QDBusConnection>
#include <QDBusObjectPath>
#include <QDBusVariant>
#include <QList>
#include <QMetaType>
#include <QObject>
#include <QString>
#include <QStringView>
#include <functional>
#include <map>
#include <sys/types.h>

namespace amberquill::desktop {

// The compound types of org.freedesktop.systemd1.
// A unit's property and its value: (sv).
struct UnitProperty {
    QString name;
    QDBusVariant value;
};

// A further unit that is started with the first: (sa(sv)).
struct AuxiliaryUnit {
    QString name;
    QList<UnitProperty> properties;
};

QDBusArgument& operator<<(QDBusArgument& argument, const UnitProperty& property);
const QDBusArgument& operator>>(const QDBusArgument& argument, UnitProperty& property);
QDBusArgument& operator<<(QDBusArgument& argument, const AuxiliaryUnit& unit);
const QDBusArgument& operator>>(const QDBusArgument& argument, AuxiliaryUnit& unit);

// Registers these types with QtDBus, before the first message that has one of them. May be called again.
void registerSystemdTypes();

// A text escaped for a unit's name, as systemd-escape does it.
[[nodiscard]] QString systemdEscaped(QStringView text);

// The unit's name for one start of an application, by systemd's convention for desktops:
// app-<launcher>-<application>-<random>.scope. A long id is cut, so that the name is not too long. `random`
// tells two starts of the same application apart.
[[nodiscard]] QString scopeName(QStringView applicationId, quint64 random);

// Moves processes into scopes (systemd units) of their own, where a systemd user manager answers on the
// session bus. A process in its own scope outlives the launcher's unit, is not counted in its memory limit,
// and portals know which application it is. Main thread only.
class SystemdScope final : public QObject {
    Q_OBJECT

public:
    SystemdScope(CurrentBus sessionBus, MainQueue& queue);

    // Moves a suspended process into a scope. `then` is called once in any case: when the process is in the
    // scope, when the manager refuses or is missing, or when it takes too long. `description` is shown to
    // the user by tools.
    void place(pid_t process, const QString& applicationId, const QString& description,
               std::function<void()> then);

private Q_SLOTS:
    void jobRemoved(uint number, const QDBusObjectPath& job, const QString& unit, const QString& result);

private:
    struct PendingScope {
        std::function<void()> then;
        DelayedWork timeout;
    };

    void listen(bool on);
    void finish(const QString& unit);

    CurrentBus sessionBus_;
    QDBusConnection bus_; // while there are pending scopes
    MainQueue& queue_;
    std::map<QString, PendingScope> pending_; // by unit
};

} // namespace amberquill::desktop

Q_DECLARE_METATYPE(amberquill::desktop::UnitProperty)
Q_DECLARE_METATYPE(amberquill::desktop::AuxiliaryUnit)
