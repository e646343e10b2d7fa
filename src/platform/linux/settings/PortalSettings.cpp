#include "platform/linux/settings/PortalSettings.h"

#include "platform/linux/settings/DesktopSettings.h"

#include <QDBusMessage>
#include <QDBusPendingCallWatcher>

namespace amberquill::desktop {

using namespace Qt::StringLiterals;

namespace {

const QString service = u"org.freedesktop.portal.Desktop"_s;
const QString object = u"/org/freedesktop/portal/desktop"_s;
const QString interface = u"org.freedesktop.portal.Settings"_s;

// Removes the variants around a value: Read wraps it in two, other calls and the signal in one.
QVariant unwrapped(QVariant value) {
    constexpr int deepest = 4;
    for (int depth = 0; depth < deepest && value.canConvert<QDBusVariant>(); ++depth) {
        value = value.value<QDBusVariant>().variant();
    }
    return value;
}

} // namespace

PortalSettings::PortalSettings(QDBusConnection bus, QList<PortalKey> keys, Handler handler, int patience)
    : bus_(std::move(bus))
    , keys_(std::move(keys))
    , handler_(std::move(handler))
    , patience_(patience)
    , watcher_(service, bus_, QDBusServiceWatcher::WatchForRegistration) {
    if (!bus_.isConnected()) {
        return;
    }
    qRegisterMetaType<QDBusVariant>(); // Qt looks up the slot's parameter types by name
    connect(&watcher_, &QDBusServiceWatcher::serviceRegistered, this, [this] { ask(); });
    bus_.connect(service, object, interface, u"SettingChanged"_s, this,
                 SLOT(settingChanged(QString, QString, QDBusVariant)));
    ask();
}

void PortalSettings::ask() {
    context_.reset();
    changed_.clear();
    for (const PortalKey& key : std::as_const(keys_)) {
        ask(key);
    }
}

void PortalSettings::ask(const PortalKey& key) {
    QDBusMessage message = QDBusMessage::createMethodCall(service, object, interface, u"Read"_s);
    message.setAutoStartService(false);
    message << key.space << key.name;
    auto* const pending = new QDBusPendingCallWatcher(bus_.asyncCall(message, patience_), this);
    auto answer =
        context_.bind([this, key](const QDBusPendingReply<QDBusVariant>& reply) { answered(key, reply); });
    connect(pending, &QDBusPendingCallWatcher::finished, this, [answer, pending]() mutable {
        pending->deleteLater();
        answer(QDBusPendingReply<QDBusVariant>(*pending));
    });
}

void PortalSettings::answered(const PortalKey& key, const QDBusPendingReply<QDBusVariant>& reply) {
    if (changed_.contains(key)) {
        return;
    }
    if (reply.isError()) {
        qCDebug(settingsLog) << "no" << key.space << key.name << reply.error().name();
        handler_(key, std::nullopt);
        return;
    }
    handler_(key, unwrapped(QVariant::fromValue(reply.value())));
}

void PortalSettings::settingChanged(const QString& space, const QString& name, const QDBusVariant& value) {
    const PortalKey key{space, name};
    if (keys_.contains(key)) {
        if (!changed_.contains(key)) {
            changed_.push_back(key);
        }
        handler_(key, unwrapped(value.variant()));
    }
}

} // namespace amberquill::desktop
