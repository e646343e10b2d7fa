#pragma once

#include "platform/linux/input/portal/PortalTypes.h"

#include <QDBusAbstractAdaptor>
#include <QDBusConnection>
#include <QDBusMessage>
#include <QDBusObjectPath>
#include <QObject>
#include <QStringList>
#include <gtest/gtest.h>
#include <optional>

namespace amberquill {

// The portal's Registry interface, which newer portals have.
class MockRegistry final : public QDBusAbstractAdaptor {
    Q_OBJECT
    Q_CLASSINFO("D-Bus Interface", "org.freedesktop.host.portal.Registry")

public:
    explicit MockRegistry(QObject& object)
        : QDBusAbstractAdaptor(&object) {}

    QStringList programs;

public Q_SLOTS:
    void Register(const QString& program, const QVariantMap& /*options*/) { programs += program; }
};

// The portal's GlobalShortcuts interface, with its requests and sessions.
class MockShortcutsPortal final : public QDBusAbstractAdaptor {
    Q_OBJECT
    Q_CLASSINFO("D-Bus Interface", "org.freedesktop.portal.GlobalShortcuts")

public:
    // `object` is put on the bus with all its interfaces.
    MockShortcutsPortal(QObject& object, QDBusConnection bus)
        : QDBusAbstractAdaptor(&object)
        , bus_(std::move(bus)) {
        desktop::registerPortalTypes();
    }

    void start() {
        EXPECT_TRUE(bus_.registerObject(QStringLiteral("/org/freedesktop/portal/desktop"), parent(),
                                        QDBusConnection::ExportAdaptors));
        EXPECT_TRUE(bus_.registerService(QStringLiteral("org.freedesktop.portal.Desktop")));
    }

    void stop() {
        bus_.unregisterService(QStringLiteral("org.freedesktop.portal.Desktop"));
        bus_.unregisterObject(QStringLiteral("/org/freedesktop/portal/desktop"));
    }

    void press(const QString& session, const QString& shortcut, const QString& token) {
        QDBusMessage signal = QDBusMessage::createSignal(
            QStringLiteral("/org/freedesktop/portal/desktop"),
            QStringLiteral("org.freedesktop.portal.GlobalShortcuts"), QStringLiteral("Activated"));
        signal << QVariant::fromValue(QDBusObjectPath(session)) << shortcut << qulonglong(5)
               << QVariantMap{{QStringLiteral("activation_token"), token}};
        bus_.send(signal);
    }

    void closeSession(const QString& session) {
        bus_.send(QDBusMessage::createSignal(session, QStringLiteral("org.freedesktop.portal.Session"),
                                             QStringLiteral("Closed")));
    }

    uint bindCode = 0;     // the user's answer: 0 yes, 1 no
    bool grantsAny = true; // whether a yes grants the shortcut
    bool takesShortcutsWithSession = false;
    bool remembers = false;              // whether shortcuts of an earlier session are known
    std::optional<QVariant> handleToSay; // instead of the session's handle
    std::optional<QVariant> listToSay;   // instead of the known shortcuts
    QStringList sessions;                // paths, in order
    QList<desktop::PortalShortcutList> bound;
    QStringList calls;

public Q_SLOTS:
    QDBusObjectPath CreateSession(const QVariantMap& options, const QDBusMessage& message) {
        calls += QStringLiteral("CreateSession");
        if (takesShortcutsWithSession) {
            remembers = !desktop::shortcutsIn(options).isEmpty();
        }
        sessions += QStringLiteral("/org/freedesktop/portal/desktop/session/") + sender(message) + u'/' +
                    options.value(QStringLiteral("session_handle_token")).toString();
        return respond(message, options, 0,
                       {{QStringLiteral("session_handle"), handleToSay.value_or(sessions.back())}});
    }

    QDBusObjectPath ListShortcuts(const QDBusObjectPath& /*session*/, const QVariantMap& options,
                                  const QDBusMessage& message) {
        calls += QStringLiteral("ListShortcuts");
        desktop::PortalShortcutList known;
        if (remembers) {
            known += {QStringLiteral("toggle-1"), {}};
        }
        return respond(message, options, 0,
                       {{QStringLiteral("shortcuts"), listToSay.value_or(QVariant::fromValue(known))}});
    }

    QDBusObjectPath BindShortcuts(const QDBusObjectPath& /*session*/,
                                  const amberquill::desktop::PortalShortcutList& shortcuts,
                                  const QString& /*parent*/, const QVariantMap& options,
                                  const QDBusMessage& message) {
        calls += QStringLiteral("BindShortcuts");
        bound += shortcuts;
        return respond(message, options, bindCode,
                       {{QStringLiteral("shortcuts"),
                         QVariant::fromValue(grantsAny ? shortcuts : desktop::PortalShortcutList())}});
    }

private:
    [[nodiscard]] static QString sender(const QDBusMessage& message) {
        QString name = message.service().mid(1);
        return name.replace(u'.', u'_');
    }

    // The Response signal may precede the call's reply.
    QDBusObjectPath respond(const QDBusMessage& message, const QVariantMap& options, uint code,
                            const QVariantMap& results) {
        const QString path = QStringLiteral("/org/freedesktop/portal/desktop/request/") + sender(message) +
                             u'/' + options.value(QStringLiteral("handle_token")).toString();
        QDBusMessage signal = QDBusMessage::createSignal(
            path, QStringLiteral("org.freedesktop.portal.Request"), QStringLiteral("Response"));
        signal << code << results;
        bus_.send(signal);
        return QDBusObjectPath(path);
    }

    QDBusConnection bus_;
};

} // namespace amberquill
