#pragma once

#include "platform/GlobalShortcut.h"
#include "platform/MainQueue.h"
#include "platform/linux/input/portal/PortalSession.h"

#include <QDBusServiceWatcher>
#include <memory>
#include <optional>

namespace amberquill::desktop {

// Global shortcuts by the portal org.freedesktop.portal.GlobalShortcuts, version 1 and later. The user
// decides whether the program gets a shortcut, and which chord. A refusal lasts until the portal restarts.
class PortalShortcuts final : public QObject, public GlobalShortcut {
    Q_OBJECT

public:
    // Seconds from adding a shortcut to the request, so that the program's start is over by then; and seconds
    // until the next request after the portal or the bus has ended our session.
    static constexpr double requestDelay = 1.5;
    static constexpr double retryDelay = 5;
    // The maximum number of repeated requests, and the seconds after which a session resets their count.
    static constexpr int maximumRetries = 5;
    static constexpr double stableSeconds = 60;

    // Makes a separate connection to the session bus, because the portal identifies programs by their
    // connections. Calls back on the main thread, at once or later, with the connection; it is not connected
    // if there is no bus.
    using Connect = std::function<void(std::function<void(const QDBusConnection&)>)>;

    // `connect` is called again after the connection is lost.
    PortalShortcuts(MainQueue& queue, Connect connect);
    ~PortalShortcuts() override = default;
    PortalShortcuts(const PortalShortcuts&) = delete;
    PortalShortcuts& operator=(const PortalShortcuts&) = delete;

    void add(std::uint32_t id, const KeyChord& chord) override;
    void remove(std::uint32_t id) override;
    void serviceCameBack() override;

private Q_SLOTS:
    void busLost();

private:
    void ask(double secondsFromNow);
    void askAgain(double secondsFromNow);
    void begin();
    void connected(const QDBusConnection& bus);
    void openSession();
    void portalChanged(const QString& before, const QString& now);
    void dropSession();

    MainQueue& queue_;
    Connect connect_;
    bool isConnecting_ = false;
    std::optional<QDBusConnection> bus_;
    std::unique_ptr<QDBusServiceWatcher> watcher_;
    std::map<std::uint32_t, KeyChord> shortcuts_;
    std::unique_ptr<PortalSession> session_;
    int sessions_ = 0; // so far
    int retries_ = 0;  // since a session lasted
    double begun_ = 0; // when the portal was asked last
    DelayedWork due_;
    Context context_;
};

} // namespace amberquill::desktop
