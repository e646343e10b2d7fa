#pragma once

#include <QDBusConnection>
#include <QDBusContext>
#include <QObject>
#include <QVariantMap>

namespace amberquill {

// An application on the bus that records its calls.
class MockApplication final : public QObject, protected QDBusContext {
    Q_OBJECT
    Q_CLASSINFO("D-Bus Interface", "org.freedesktop.Application")

public:
    MockApplication(QDBusConnection bus, const QString& name, const QString& path)
        : bus_(std::move(bus)) {
        bus_.registerObject(path, this, QDBusConnection::ExportAllSlots);
        bus_.registerService(name);
    }

    // Answers with this error from now on. Empty: does not answer.
    void failWith(const QString& error) {
        fails_ = true;
        error_ = error;
    }

    [[nodiscard]] const QList<QVariantMap>& activations() const { return activations_; }

public Q_SLOTS:
    void Activate(const QVariantMap& platformData) {
        activations_ += platformData;
        if (fails_ && error_.isEmpty()) {
            setDelayedReply(true);
        } else if (fails_) {
            sendErrorReply(error_, QStringLiteral("no"));
        }
    }

private:
    QDBusConnection bus_;
    bool fails_ = false;
    QString error_;
    QList<QVariantMap> activations_;
};

} // namespace amberquill
