// platform/linux/tray/: finds out whether the desktop can show the status item: by a host of status notifier
// items on the session bus or, on X11, by an XEmbed tray, which embeds the item's window. Qt draws the item.
//
// Parts: LinuxTrayHosts looks for both and reports new ones; XEmbedTrays finds XEmbed trays, and reads the
// picture of the item in them.
//
// Rules: main thread only. The bus is asked asynchronously, the X server with a round trip. The item is shown
// only once there is a host: Qt looks for one only once. Log: amberquill.tray.
#pragma once

#include "platform/TrayHosts.h"
#include "platform/linux/dbus/AsyncBusConnector.h"
#include "platform/linux/tray/XEmbedTrays.h"

#include <QObject>
#include <memory>
#include <optional>

class QDBusServiceWatcher;

namespace amberquill::desktop {

// Hosts of status notifier items on the session bus and, if there is none, XEmbed trays on an X server. Qt
// chooses the kind of tray once, when it first looks at the bus, so it must not look before there is a host.
// Main thread only.
class LinuxTrayHosts final : public QObject, public TrayHosts {
    Q_OBJECT

public:
    // `sessionBus` is called when the hosts are first followed, and by busCameBack().
    explicit LinuxTrayHosts(CurrentBus sessionBus);
    ~LinuxTrayHosts() override;

    LinuxTrayHosts(const LinuxTrayHosts&) = delete;
    LinuxTrayHosts& operator=(const LinuxTrayHosts&) = delete;

    void follow(std::function<void()> came, std::function<void()> gone) override;
    [[nodiscard]] QImage itemPicture() const override;

    // Follows the hosts on the new connection to the session bus. An item that Qt made on the earlier
    // connection stays there.
    void busCameBack();

private Q_SLOTS:
    void ask();

private:
    void followBus();

    CurrentBus sessionBus_;
    std::optional<QDBusConnection> bus_;
    std::function<void()> came_;
    std::function<void()> gone_;
    std::unique_ptr<QDBusServiceWatcher> watcher_;
    std::unique_ptr<XEmbedTrays> xembedTrays_;
};

} // namespace amberquill::desktop
