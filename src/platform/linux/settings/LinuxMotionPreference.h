#pragma once

#include "platform/MainQueue.h"
#include "platform/MotionPreference.h"
#include "platform/linux/dbus/AsyncBusConnector.h"
#include "platform/linux/environment/Environment.h"
#include "platform/linux/settings/MotionSettings.h"
#include "platform/linux/settings/PortalSettings.h"

#include <QFileSystemWatcher>
#include <QObject>
#include <functional>
#include <memory>

namespace amberquill::desktop {

// Asks the desktop's portal. For desktops without a portal, or whose portal lacks the setting, also reads the
// settings files of GNOME and KDE. Begins with follow(), not in the constructor.
class LinuxMotionPreference final : public QObject, public MotionPreference {
    Q_OBJECT

public:
    // `bus` is called by follow() and busCameBack(). `queue` outlives this object.
    LinuxMotionPreference(const Environment& environment, MainQueue& queue, CurrentBus bus);

    [[nodiscard]] bool isReduced() const override { return isReduced_; }
    void follow(std::function<void()> changed) override;

    // Follows the portal on the new connection to the session bus.
    void busCameBack();

private:
    void followPortal();
    void readFiles();
    void readFilesSoon();
    void filesAreRead(const MotionFiles& files);
    void watchFiles();
    void take(const PortalKey& key, const std::optional<QVariant>& value);
    void decide();

    MainQueue& queue_;
    CurrentBus bus_;
    QStringList configuration_;
    MotionSettings settings_;
    std::function<void()> changed_;
    std::unique_ptr<PortalSettings> portal_;
    std::unique_ptr<QFileSystemWatcher> watcher_;
    bool isReading_ = false; // or about to
    bool hasChangedMeanwhile_ = false;
    bool isReduced_ = false;
    Context context_;
};

} // namespace amberquill::desktop
