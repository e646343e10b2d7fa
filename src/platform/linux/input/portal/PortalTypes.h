#pragma once

#include "platform/GlobalShortcut.h"

#include <QDBusArgument>
#include <QList>
#include <QString>
#include <QVariantMap>

namespace amberquill::desktop {

// A shortcut in the format of the GlobalShortcuts portal: an id, and properties such as "description" and
// "preferred_trigger".
struct PortalShortcut {
    QString id;
    QVariantMap properties;
};
using PortalShortcutList = QList<PortalShortcut>;

QDBusArgument& operator<<(QDBusArgument& argument, const PortalShortcut& shortcut);
const QDBusArgument& operator>>(const QDBusArgument& argument, PortalShortcut& shortcut);

// Registers these types with QtDBus. Call it before the first of them is sent or received.
void registerPortalTypes();

// A chord in freedesktop.org's shortcut format: CTRL+ALT+space.
[[nodiscard]] QString portalTrigger(const KeyChord& chord);

// The shortcuts in a response; empty if there are none or their type is wrong.
[[nodiscard]] PortalShortcutList shortcutsIn(const QVariantMap& results);

// The session's object path in a response; empty if it is missing or not a valid path.
[[nodiscard]] QString sessionIn(const QVariantMap& results);

} // namespace amberquill::desktop

Q_DECLARE_METATYPE(amberquill::desktop::PortalShortcut)
Q_DECLARE_METATYPE(amberquill::desktop::PortalShortcutList)
