#pragma once

#include "platform/linux/dbus/CurrentBus.h"

#include <QObject>
#include <QString>
#include <functional>
#include <optional>

namespace amberquill::desktop {

// Where an application that the bus starts is found, by the Desktop Entry Specification's "D-Bus Activation".
struct BusAddress {
    QString name;
    QString path;

    bool operator==(const BusAddress&) const = default;
};

// The address of the application whose desktop file has this id (without `.desktop`). None: the id is no
// well-known name of the bus.
[[nodiscard]] std::optional<BusAddress> busAddress(const QString& applicationId);

enum class BusActivationResult {
    Started,
    Failed,      // it was asked, or may have been: asking by another way could start it twice
    Unavailable, // it was certainly not asked: there is no bus, or nothing that provides it
};

// Asks applications over the session bus to show themselves. Main thread only.
class BusActivation final : public QObject {
    Q_OBJECT

public:
    explicit BusActivation(CurrentBus sessionBus);

    // `token` may be empty. `then` is called once, after two minutes and a bit at the latest.
    void activate(const BusAddress& address, const QString& token,
                  std::function<void(BusActivationResult)> then);

private:
    CurrentBus sessionBus_;
};

} // namespace amberquill::desktop
