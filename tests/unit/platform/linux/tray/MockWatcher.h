#pragma once

#include <QDBusConnection>
#include <QObject>
#include <gtest/gtest.h>
#include <utility>

namespace amberquill {

// A StatusNotifierWatcher: it registers items and reports whether a host shows them.
class MockWatcher final : public QObject {
    Q_OBJECT
    Q_CLASSINFO("D-Bus Interface", "org.kde.StatusNotifierWatcher")
    Q_PROPERTY(bool IsStatusNotifierHostRegistered READ hasHost)

public:
    explicit MockWatcher(QDBusConnection bus)
        : bus_(std::move(bus)) {
        EXPECT_TRUE(
            bus_.registerObject(QStringLiteral("/StatusNotifierWatcher"), this,
                                QDBusConnection::ExportAllProperties | QDBusConnection::ExportAllSignals));
    }

    // Takes the watcher's name.
    void appear() { EXPECT_TRUE(bus_.registerService(name)); }
    void disappear() { EXPECT_TRUE(bus_.unregisterService(name)); }

    void addHost() {
        hasHost_ = true;
        Q_EMIT StatusNotifierHostRegistered();
    }
    void setHost(bool hasHost) { hasHost_ = hasHost; }

    [[nodiscard]] bool hasHost() {
        ++questions_;
        return hasHost_;
    }
    [[nodiscard]] int questions() const { return questions_; }

Q_SIGNALS:
    void StatusNotifierHostRegistered();

private:
    const QString name = QStringLiteral("org.kde.StatusNotifierWatcher");
    QDBusConnection bus_;
    bool hasHost_ = false;
    int questions_ = 0;
};

} // namespace amberquill
