#include "platform/linux/input/portal/PortalTypes.h"

#include <QDBusMetaType>
#include <QDBusObjectPath>
#include <algorithm>

namespace amberquill::desktop {

namespace {

using namespace Qt::StringLiterals;

// By the D-Bus Specification, "Valid Object Paths". With an invalid path, the D-Bus libraries warn or abort.
bool isObjectPath(const QString& path) {
    constexpr qsizetype longest = 1000;
    return path.size() > 1 && path.size() <= longest && path.startsWith(u'/') && !path.endsWith(u'/') &&
           !path.contains(u"//"_s) && std::all_of(path.begin(), path.end(), [](QChar character) {
               const bool isLatin = character.unicode() < 0x80;
               return isLatin && (character.isLetterOrNumber() || character == u'_' || character == u'/');
           });
}

} // namespace

QDBusArgument& operator<<(QDBusArgument& argument, const PortalShortcut& shortcut) {
    argument.beginStructure();
    argument << shortcut.id << shortcut.properties;
    argument.endStructure();
    return argument;
}

const QDBusArgument& operator>>(const QDBusArgument& argument, PortalShortcut& shortcut) {
    argument.beginStructure();
    argument >> shortcut.id >> shortcut.properties;
    argument.endStructure();
    return argument;
}

void registerPortalTypes() {
    qDBusRegisterMetaType<PortalShortcut>();
    qDBusRegisterMetaType<PortalShortcutList>();
    // Qt looks up a slot's parameter types by name, but registers the names of its own types only at first
    // use.
    qRegisterMetaType<QDBusObjectPath>();
}

QString portalTrigger(const KeyChord& chord) {
    QString trigger;
    const auto add = [&](Qt::KeyboardModifier modifier, QStringView name) {
        if (chord.modifiers.testFlag(modifier)) {
            trigger += name;
            trigger += u'+';
        }
    };
    add(Qt::ControlModifier, u"CTRL");
    add(Qt::AltModifier, u"ALT");
    add(Qt::ShiftModifier, u"SHIFT");
    add(Qt::MetaModifier, u"LOGO");
    return trigger +
           (chord.key == Qt::Key_Space ? u"space"_s : QString(QChar(char16_t(chord.key))).toLower());
}

PortalShortcutList shortcutsIn(const QVariantMap& results) {
    const QVariant value = results.value(u"shortcuts"_s);
    if (value.metaType() != QMetaType::fromType<QDBusArgument>()) {
        return {};
    }
    const auto argument = value.value<QDBusArgument>();
    // Demarshalling any other type would abort the program.
    return argument.currentSignature() == u"a(sa{sv})"_s ? qdbus_cast<PortalShortcutList>(argument)
                                                         : PortalShortcutList();
}

QString sessionIn(const QVariantMap& results) {
    // Documented as a string, but some portals send an object path.
    const QVariant value = results.value(u"session_handle"_s);
    const QString path = value.metaType() == QMetaType::fromType<QDBusObjectPath>()
                             ? value.value<QDBusObjectPath>().path()
                             : value.toString();
    return isObjectPath(path) ? path : QString();
}

} // namespace amberquill::desktop
