#pragma once

#include "platform/GlobalShortcut.h"
#include "platform/MainQueue.h"
#include "platform/linux/input/portal/PortalSession.h"

#include <QDBusServiceWatcher>
#include <memory>
#include <optional>

namespace amberquill::desktop {

// The portal org.freedesktop.portal.GlobalShortcuts, version 1 and later: the user decides whether a chord is
// given to the program and which one it is. A refusal holds until the portal is started anew.
class PortalShortcuts final : public QObject, public GlobalShortcut {
    Q_OBJECT

public:
    // Seconds after a shortcut is added until the portal is asked: a start is over by then. And those until
    // it is asked again when it or the bus has ended our session.
    static constexpr double untilAsked = 1.5;
    static constexpr double untilAskedAgain = 5;
    // How often it is asked again at most, unless it has kept to a session for so many seconds.
    static constexpr int mostRepetitions = 5;
    static constexpr double lasting = 60;

    // Makes a connection to the session bus of its own, by which the portal tells programs apart, and calls
    // back with it on the main thread, at once or later. One that is not connected means that there is no
    // bus.
    using Connect = std::function<void(std::function<void(const QDBusConnection&)>)>;

    // `connect` is called again when the bus has ended the connection.
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
    int sessions_ = 0;    // so far
    int repetitions_ = 0; // since a session lasted
    double begun_ = 0;    // when the portal was asked last
    DelayedWork due_;
    Context context_;
};

} // namespace amberquill::desktop
