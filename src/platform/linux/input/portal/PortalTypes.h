#pragma once

#include "platform/GlobalShortcut.h"

#include <QDBusArgument>
#include <QList>
#include <QString>
#include <QVariantMap>

namespace amberquill::desktop {

// A shortcut as the GlobalShortcuts portal has it: its id, and among the properties "description" and
// "preferred_trigger".
struct PortalShortcut {
    QString id;
    QVariantMap properties;
};
using PortalShortcutList = QList<PortalShortcut>;

QDBusArgument& operator<<(QDBusArgument& argument, const PortalShortcut& shortcut);
const QDBusArgument& operator>>(const QDBusArgument& argument, PortalShortcut& shortcut);

// Once, before the first of them is sent or received.
void registerPortalTypes();

// A chord as freedesktop.org writes shortcuts: CTRL+ALT+space.
[[nodiscard]] QString portalTrigger(const KeyChord& chord);

// What a response says of shortcuts; empty where it says nothing, or something else.
[[nodiscard]] PortalShortcutList shortcutsIn(const QVariantMap& results);

// The session's object path in a response; empty where there is none or it is no path.
[[nodiscard]] QString sessionIn(const QVariantMap& results);

} // namespace amberquill::desktop

Q_DECLARE_METATYPE(amberquill::desktop::PortalShortcut)
Q_DECLARE_METATYPE(amberquill::desktop::PortalShortcutList)
