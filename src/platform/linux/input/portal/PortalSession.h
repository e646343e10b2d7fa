#pragma once

#include "platform/linux/input/portal/PortalTypes.h"

#include <QDBusConnection>
#include <QDBusMessage>
#include <QDBusObjectPath>
#include <QObject>
#include <functional>
#include <map>

namespace amberquill::desktop {

// One session with the portal org.freedesktop.portal.GlobalShortcuts, from the request to its end. Requests
// the shortcuts once, even if the user refuses them. Delete it when it has ended.
class PortalSession final : public QObject {
    Q_OBJECT

public:
    // The connection is the program's own for this portal. `number` is unique among the sessions of this
    // connection.
    PortalSession(QDBusConnection bus, std::map<std::uint32_t, KeyChord> shortcuts, int number);
    ~PortalSession() override;
    PortalSession(const PortalSession&) = delete;
    PortalSession& operator=(const PortalSession&) = delete;

Q_SIGNALS:
    void pressed(std::uint32_t id, const QString& activationToken);
    void ended();       // by the portal
    void unavailable(); // there is no such portal

private Q_SLOTS:
    void responded(uint code, const QVariantMap& results, const QDBusMessage& message);
    void activated(const QDBusObjectPath& session, const QString& shortcut, qulonglong time,
                   const QVariantMap& options);

private:
    using Response = std::function<void(const QVariantMap& results)>;

    [[nodiscard]] PortalShortcutList wanted() const;
    void registerProgram();
    void createSession();
    void listShortcuts();
    void bindShortcuts();

    // Calls a method that replies through a request object. `then` runs when the user or the portal has
    // agreed.
    void request(const QString& method, QVariantList arguments, QVariantMap options, Response then);

    QDBusConnection bus_;
    std::map<std::uint32_t, KeyChord> shortcuts_;
    QString token_;  // prefix of the requests' tokens
    QString handle_; // the session's path; empty: no session yet
    int requests_ = 0;
    QString requestPath_; // of the pending request
    Response response_;
};

} // namespace amberquill::desktop
