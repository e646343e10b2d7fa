#include "platform/linux/applications/launching/SystemdScope.h"

#include "platform/linux/applications/launching/SystemdTypes.h"

#include <QDBusMessage>
#include <QDBusPendingCallWatcher>
#include <QDBusPendingReply>
#include <QLoggingCategory>
#include <QRandomGenerator>
#include <utility>

namespace amberquill::desktop {

namespace {

using namespace Qt::StringLiterals;

Q_LOGGING_CATEGORY(scopeLog, "amberquill.launching.scope", QtCriticalMsg)

// An application is not kept waiting longer for a manager that hangs.
constexpr double longestWait = 1.0;
constexpr qsizetype longestUnitName = 255;

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
    message.setAutoStartService(false); // a desktop without systemd says so at once
    message << unit << u"fail"_s << QVariant::fromValue(properties)
            << QVariant::fromValue(QList<AuxiliaryUnit>());
    return message;
}

} // namespace

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
    const qsizetype room = longestUnitName - before.size() - after.size();
    // Only as much of the id as fits, and no half of an escape.
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
    if (waiting_.empty()) {
        bus_ = sessionBus_();
    }
    if (!bus_.isConnected()) {
        then();
        return;
    }
    if (waiting_.empty()) {
        listen(true); // before the request, so that no answer is missed
    }
    const QString unit = scopeName(applicationId, QRandomGenerator::global()->generate64());
    waiting_.emplace(unit,
                     Waiting{std::move(then), queue_.postAfter(longestWait, [this, unit] { finish(unit); })});

    auto* const call = new QDBusPendingCallWatcher(bus_.asyncCall(request(unit, process, description)), this);
    connect(call, &QDBusPendingCallWatcher::finished, this, [this, call, unit] {
        call->deleteLater();
        // A success is only the promise of a job; its end is what the process waits for.
        if (call->isError()) {
            qCDebug(scopeLog) << unit << call->error().name();
            finish(unit);
        }
    });
}

// By path and interface, without the sender: naming one makes Qt ask the bus for its owner and wait.
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
    const auto found = waiting_.find(unit);
    if (found == waiting_.end()) {
        return;
    }
    Waiting done = std::move(found->second);
    waiting_.erase(found);
    if (waiting_.empty()) {
        listen(false);
    }
    done.limit.cancel();
    done.then();
}

} // namespace amberquill::desktop
