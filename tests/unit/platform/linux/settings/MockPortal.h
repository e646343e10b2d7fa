#pragma once

#include "platform/linux/settings/PortalSettings.h"

#include <QDBusConnection>
#include <QDBusContext>
#include <QDBusMessage>
#include <QDBusVariant>
#include <QHash>
#include <QList>
#include <QObject>
#include <utility>

namespace amberquill {

// The Settings interface of a desktop portal.
class MockPortal final : public QObject, protected QDBusContext {
    Q_OBJECT
    Q_CLASSINFO("D-Bus Interface", "org.freedesktop.portal.Settings")

public:
    explicit MockPortal(QDBusConnection bus)
        : bus_(std::move(bus)) {
        bus_.registerObject(QStringLiteral("/org/freedesktop/portal/desktop"), this,
                            QDBusConnection::ExportAllSlots | QDBusConnection::ExportAllSignals);
    }

    // Takes the portal's name.
    void appear() { bus_.registerService(QStringLiteral("org.freedesktop.portal.Desktop")); }
    void disappear() { bus_.unregisterService(QStringLiteral("org.freedesktop.portal.Desktop")); }

    void set(const desktop::PortalKey& key, const QVariant& value) { values_[key.space + key.name] = value; }
    void forget(const desktop::PortalKey& key) { values_.remove(key.space + key.name); }

    void change(const desktop::PortalKey& key, const QVariant& value) {
        set(key, value);
        Q_EMIT SettingChanged(key.space, key.name, QDBusVariant(value));
    }

    // From now on calls are not answered until the test asks for it. The answers then have the values of the
    // time of the call.
    void hang() { hangs_ = true; }
    void answerLate() {
        for (const QDBusMessage& answer : std::exchange(late_, {})) {
            bus_.send(answer);
        }
    }

    [[nodiscard]] int questions() const { return questions_; }

public Q_SLOTS:
    // In a nested variant, like real portals.
    QDBusVariant Read(const QString& space, const QString& name) {
        ++questions_;
        setDelayedReply(true);
        const auto found = values_.constFind(space + name);
        const auto answer =
            found == values_.constEnd()
                ? message().createErrorReply(QStringLiteral("org.freedesktop.portal.Error.NotFound"),
                                             QStringLiteral("none"))
                : message().createReply(
                      QVariant::fromValue(QDBusVariant(QVariant::fromValue(QDBusVariant(*found)))));
        late_ += answer;
        if (!hangs_) {
            answerLate();
        }
        return {};
    }

Q_SIGNALS:
    void SettingChanged(const QString& space, const QString& name, const QDBusVariant& value);

private:
    QDBusConnection bus_;
    QHash<QString, QVariant> values_;
    QList<QDBusMessage> late_;
    bool hangs_ = false;
    int questions_ = 0;
};

} // namespace amberquill
