// platform/linux/tray/: whether the desktop has a place for the status item: a host of status notifier items
// on the session bus or, on X11, an XEmbed tray that takes windows into itself. Qt draws the item.
//
// Parts: LinuxTrayHosts asks both and reports hosts that come; XEmbedTrays finds the older kind, and reads
// the picture of the item in it.
//
// Rules: main thread only. The bus is asked without waiting, the X server with a round trip. An item goes to
// a host that is there: Qt never looks again. Log: amberquill.tray.
#pragma once

#include "platform/TrayHosts.h"
#include "platform/linux/dbus/AsyncBusConnector.h"
#include "platform/linux/tray/XEmbedTrays.h"

#include <QObject>
#include <memory>
#include <optional>

class QDBusServiceWatcher;

namespace amberquill::desktop {

// Hosts of status notifier items on the session bus and, on an X server, trays of the older kind where there
// is no such host. What Qt makes for a tray it makes for good after its first look at the bus, so it must not
// look before a host is there. Main thread only.
class LinuxTrayHosts final : public QObject, public TrayHosts {
    Q_OBJECT

public:
    // The session bus is asked for when the hosts are first followed, and when it came back.
    explicit LinuxTrayHosts(CurrentBus sessionBus);
    ~LinuxTrayHosts() override;

    LinuxTrayHosts(const LinuxTrayHosts&) = delete;
    LinuxTrayHosts& operator=(const LinuxTrayHosts&) = delete;

    void follow(std::function<void()> came, std::function<void()> gone) override;
    [[nodiscard]] QImage itemPicture() const override;

    // There is another connection to the session bus: its hosts are followed. What Qt made for a host of the
    // bus before stays with that one.
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
