#pragma once

#include "platform/linux/applications/launching/SystemdScope.h"

#include <QDBusConnection>
#include <QDBusContext>
#include <QDBusMessage>
#include <QDBusObjectPath>
#include <QObject>
#include <functional>

namespace amberquill {

// A systemd user manager on the bus. Records the requests, and answers each as the test says.
class MockManager final : public QObject, protected QDBusContext {
    Q_OBJECT
    Q_CLASSINFO("D-Bus Interface", "org.freedesktop.systemd1.Manager")

public:
    struct Request {
        QString unit;
        QString mode;
        QHash<QString, QVariant> properties;
        qsizetype auxiliaryUnits = 0;
    };

    enum class Answer { Job, Error, None };

    explicit MockManager(QDBusConnection bus)
        : bus_(std::move(bus)) {
        desktop::registerSystemdTypes();
        bus_.registerObject(QStringLiteral("/org/freedesktop/systemd1"), this,
                            QDBusConnection::ExportAllSlots | QDBusConnection::ExportAllSignals);
        bus_.registerService(QStringLiteral("org.freedesktop.systemd1"));
    }

    void setAnswer(Answer answer) { answer_ = answer; }

    // Called for each request, before it is answered.
    void onRequest(std::function<void(const Request&)> work) { onRequest_ = std::move(work); }

    [[nodiscard]] const QList<Request>& requests() const { return requests_; }

    void finishJob(const QString& unit, const QString& result = QStringLiteral("done")) {
        Q_EMIT JobRemoved(7, QDBusObjectPath("/org/freedesktop/systemd1/job/7"), unit, result);
    }

public Q_SLOTS:
    QDBusObjectPath StartTransientUnit(const QString& unit, const QString& mode,
                                       const QList<amberquill::desktop::UnitProperty>& properties,
                                       const QList<amberquill::desktop::AuxiliaryUnit>& auxiliary) {
        Request request{unit, mode, {}, auxiliary.size()};
        for (const desktop::UnitProperty& property : properties) {
            request.properties.insert(property.name, property.value.variant());
        }
        requests_ += request;
        if (onRequest_) {
            onRequest_(request);
        }
        if (answer_ == Answer::Error) {
            sendErrorReply(QStringLiteral("org.freedesktop.systemd1.UnitExists"), QStringLiteral("no"));
        } else if (answer_ == Answer::None) {
            setDelayedReply(true);
        }
        return QDBusObjectPath("/org/freedesktop/systemd1/job/7");
    }

Q_SIGNALS:
    void JobRemoved(uint number, const QDBusObjectPath& job, const QString& unit, const QString& result);

private:
    QDBusConnection bus_;
    Answer answer_ = Answer::Job;
    std::function<void(const Request&)> onRequest_;
    QList<Request> requests_;
};

} // namespace amberquill
