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

// Follows settings of the desktop's portal. Never blocks, and never starts the portal: a desktop with a
// portal runs it. Main thread only.
class PortalSettings final : public QObject {
    Q_OBJECT

public:
    // Called with each answer and each change. None: the running portal does not know the setting.
    using Handler = std::function<void(const PortalKey& key, const std::optional<QVariant>& value)>;

    // `patience`: milliseconds to wait for an answer. Changes are followed even if no answer came in time.
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
    Context context_;          // of the calls to the running portal
};

} // namespace amberquill::desktop
