#pragma once

#include "platform/linux/dbus/AsyncBusConnector.h"

#include <QObject>
#include <QString>
#include <functional>
#include <optional>

namespace amberquill::desktop {

// The bus address of an application, by the Desktop Entry Specification's "D-Bus Activation".
struct BusAddress {
    QString name;
    QString path;

    bool operator==(const BusAddress&) const = default;
};

// The address of the application whose desktop file has this id (without `.desktop`). None: the id is not a
// valid bus name.
[[nodiscard]] std::optional<BusAddress> busAddress(const QString& applicationId);

enum class BusActivationResult {
    Started,
    Failed,      // the request was delivered, or may have been: starting it another way could start it twice
    Unavailable, // the request was not delivered: no bus, or no such service
};

// Activates applications over the session bus. Main thread only.
class BusActivation final : public QObject {
    Q_OBJECT

public:
    explicit BusActivation(CurrentBus sessionBus);

    // `token` may be empty. `then` is called once, within about two minutes.
    void activate(const BusAddress& address, const QString& token,
                  std::function<void(BusActivationResult)> then);

private:
    CurrentBus sessionBus_;
};

} // namespace amberquill::desktop
