#include "platform/linux/applications/launching/SystemdScope.h"

#include <QDBusMessage>
#include <QDBusMetaType>
#include <QDBusPendingCallWatcher>
#include <QDBusPendingReply>
#include <QLoggingCategory>
#include <QRandomGenerator>
#include <utility>

namespace amberquill::desktop {

namespace {

using namespace Qt::StringLiterals;

Q_LOGGING_CATEGORY(scopeLog, "amberquill.launching", QtCriticalMsg)

// A manager that hangs delays an application by no more than this.
constexpr double scopeTimeoutSeconds = 1.0;
constexpr qsizetype maximumUnitName = 255;

const QString service = u"org.freedesktop.systemd1"_s;
const QString managerPath = u"/org/freedesktop/systemd1"_s;
const QString managerInterface = u"org.freedesktop.systemd1.Manager"_s;

QDBusMessage request(const QString& unit, pid_t process, const QString& description) {
    const auto property = [](const QString& name, const QVariant& value) {
        return UnitProperty{name, QDBusVariant(value)};
    };
    const QList<UnitProperty> properties{
        property(u"PIDs"_s, QVariant::fromValue(QList<uint>{static_cast<uint>(process)})),
        property(u"Slice"_s, u"app.slice"_s),
        property(u"CollectMode"_s, u"inactive-or-failed"_s),
        property(u"Description"_s, description),
    };
    QDBusMessage message =
        QDBusMessage::createMethodCall(service, managerPath, managerInterface, u"StartTransientUnit"_s);
    message.setAutoStartService(false); // without systemd the answer is an immediate error
    message << unit << u"fail"_s << QVariant::fromValue(properties)
            << QVariant::fromValue(QList<AuxiliaryUnit>());
    return message;
}

} // namespace

QDBusArgument& operator<<(QDBusArgument& argument, const UnitProperty& property) {
    argument.beginStructure();
    argument << property.name << property.value;
    argument.endStructure();
    return argument;
}

const QDBusArgument& operator>>(const QDBusArgument& argument, UnitProperty& property) {
    argument.beginStructure();
    argument >> property.name >> property.value;
    argument.endStructure();
    return argument;
}

QDBusArgument& operator<<(QDBusArgument& argument, const AuxiliaryUnit& unit) {
    argument.beginStructure();
    argument << unit.name << unit.properties;
    argument.endStructure();
    return argument;
}

const QDBusArgument& operator>>(const QDBusArgument& argument, AuxiliaryUnit& unit) {
    argument.beginStructure();
    argument >> unit.name >> unit.properties;
    argument.endStructure();
    return argument;
}

void registerSystemdTypes() {
    qDBusRegisterMetaType<UnitProperty>();
    qDBusRegisterMetaType<QList<UnitProperty>>();
    qDBusRegisterMetaType<AuxiliaryUnit>();
    qDBusRegisterMetaType<QList<AuxiliaryUnit>>();
    // Slots' parameter types are looked up by name, and Qt registers this type's name only on demand.
    qRegisterMetaType<QDBusObjectPath>();
}

QString systemdEscaped(QStringView text) {
    const QByteArray bytes = text.toUtf8();
    QString escaped;
    for (qsizetype i = 0; i < bytes.size(); ++i) {
        const char c = bytes[i];
        const bool letter = (c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z');
        const bool plain = letter || (c >= '0' && c <= '9') || c == ':' || c == '_' || (c == '.' && i > 0);
        if (plain) {
            escaped += QLatin1Char(c);
        } else if (c == '/') {
            escaped += u'-';
        } else {
            escaped += u"\\x"_s + QLatin1StringView(QByteArray(1, c).toHex());
        }
    }
    return escaped;
}

QString scopeName(QStringView applicationId, quint64 random) {
    const QString before = u"app-amberquill-"_s;
    const QString after = u"-%1.scope"_s.arg(random, 16, 16, QLatin1Char('0'));
    const qsizetype room = maximumUnitName - before.size() - after.size();
    // Cuts the id before it is escaped, so that no escape is cut in half.
    while (systemdEscaped(applicationId).size() > room) {
        applicationId.chop(1);
    }
    return before + systemdEscaped(applicationId) + after;
}

SystemdScope::SystemdScope(CurrentBus sessionBus, MainQueue& queue)
    : sessionBus_(std::move(sessionBus))
    , bus_(QString())
    , queue_(queue) {
    registerSystemdTypes();
}

void SystemdScope::place(pid_t process, const QString& applicationId, const QString& description,
                         std::function<void()> then) {
    if (pending_.empty()) {
        bus_ = sessionBus_();
    }
    if (!bus_.isConnected()) {
        then();
        return;
    }
    if (pending_.empty()) {
        listen(true); // before the request, so that no signal is missed
    }
    const QString unit = scopeName(applicationId, QRandomGenerator::global()->generate64());
    pending_.emplace(unit, PendingScope{std::move(then), queue_.postAfter(scopeTimeoutSeconds, [this, unit] {
                                            qCDebug(scopeLog) << "no answer in time:" << unit;
                                            finish(unit);
                                        })});

    auto* const call = new QDBusPendingCallWatcher(bus_.asyncCall(request(unit, process, description)), this);
    connect(call, &QDBusPendingCallWatcher::finished, this, [this, call, unit] {
        call->deleteLater();
        // Success means that a job was queued. The process waits for JobRemoved.
        if (call->isError()) {
            qCDebug(scopeLog) << "no scope:" << unit << call->error().name();
            finish(unit);
        }
    });
}

// Matches path and interface, but no sender: with a sender Qt would ask the bus for its owner, and block.
void SystemdScope::listen(bool on) {
    const QString signal = u"JobRemoved"_s;
    const char* const slot = SLOT(jobRemoved(uint, QDBusObjectPath, QString, QString));
    if (on) {
        bus_.connect({}, managerPath, managerInterface, signal, this, slot);
    } else {
        bus_.disconnect({}, managerPath, managerInterface, signal, this, slot);
    }
}

void SystemdScope::jobRemoved(uint, const QDBusObjectPath&, const QString& unit, const QString&) {
    finish(unit);
}

void SystemdScope::finish(const QString& unit) {
    const auto found = pending_.find(unit);
    if (found == pending_.end()) {
        return;
    }
    PendingScope done = std::move(found->second);
    pending_.erase(found);
    if (pending_.empty()) {
        listen(false);
    }
    done.timeout.cancel();
    done.then();
}

} // namespace amberquill::desktop
