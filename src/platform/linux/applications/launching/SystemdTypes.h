#pragma once

#include <QDBusArgument>
#include <QDBusVariant>
#include <QList>
#include <QMetaType>
#include <QString>

// The compound types of org.freedesktop.systemd1, as QtDBus wants them.
namespace amberquill::desktop {

// A unit's property and its value: (sv).
struct UnitProperty {
    QString name;
    QDBusVariant value;
};

// A further unit to be made along with the first: (sa(sv)).
struct AuxiliaryUnit {
    QString name;
    QList<UnitProperty> properties;
};

QDBusArgument& operator<<(QDBusArgument& argument, const UnitProperty& property);
const QDBusArgument& operator>>(const QDBusArgument& argument, UnitProperty& property);
QDBusArgument& operator<<(QDBusArgument& argument, const AuxiliaryUnit& unit);
const QDBusArgument& operator>>(const QDBusArgument& argument, AuxiliaryUnit& unit);

// Makes them known to QtDBus. Before the first message that has one of them; again is harmless.
void registerSystemdTypes();

} // namespace amberquill::desktop

Q_DECLARE_METATYPE(amberquill::desktop::UnitProperty)
Q_DECLARE_METATYPE(amberquill::desktop::AuxiliaryUnit)
