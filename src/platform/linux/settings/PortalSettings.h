#pragma once

#include "platform/Context.h"

#include <QDBusConnection>
#include <QDBusPendingReply>
#include <QDBusServiceWatcher>
#include <QDBusVariant>
#include <QList>
#include <QObject>
#include <QVariant>
#include <functional>
#include <optional>

namespace amberquill::desktop {

// One setting of org.freedesktop.portal.Settings.
struct PortalKey {
    QString space; // its namespace
    QString name;

    bool operator==(const PortalKey&) const = default;
};

// Follows settings that the desktop's portal knows. Never waits for it, and never has it started: a desktop
// that has one runs it. Main thread only.
class PortalSettings final : public QObject {
    Q_OBJECT

public:
    // Called with each answer and each change. None: the portal that runs now does not know the setting.
    using Handler = std::function<void(const PortalKey& key, const std::optional<QVariant>& value)>;

    // An answer that takes longer than `patience` milliseconds is not waited for; what changes later is heard
    // all the same.
    PortalSettings(QDBusConnection bus, QList<PortalKey> keys, Handler handler, int patience = 3000);

private Q_SLOTS:
    void settingChanged(const QString& space, const QString& name, const QDBusVariant& value);

private:
    void ask();
    void ask(const PortalKey& key);
    void answered(const PortalKey& key, const QDBusPendingReply<QDBusVariant>& reply);

    QDBusConnection bus_;
    QList<PortalKey> keys_;
    Handler handler_;
    int patience_;
    QDBusServiceWatcher watcher_;
    QList<PortalKey> changed_; // since the portal was asked: its answer may be older than the change
    Context context_;          // of the calls to the portal that runs now
};

} // namespace amberquill::desktop
