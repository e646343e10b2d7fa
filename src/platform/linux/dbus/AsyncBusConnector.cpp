#include "platform/linux/dbus/AsyncBusConnector.h"

#include "platform/linux/dbus/BusConnection.h"

#include <mutex>
#include <utility>

namespace amberquill::desktop {

namespace {

// A bus that takes longer to say hello counts as none.
constexpr std::chrono::seconds longestWait{2};

QDBusConnection connectTo(const QByteArray& address, const QString& name) {
    QDBusConnection::disconnectFromBus(name); // an earlier one
    // Qt has no bounds of its own, and whatever else it connects would wait as well.
    return connectToBus(address, longestWait)
               ? QDBusConnection::connectToBus(QString::fromUtf8(address), name)
               : QDBusConnection(name);
}

} // namespace

AsyncBusConnector::AsyncBusConnector(QByteArray address, QString name, MainQueue& queue)
    : address_(std::move(address))
    , name_(std::move(name))
    , queue_(queue) {}

void AsyncBusConnector::connect(Connected then) {
    queue_.runInBackground(
        [address = address_, name = name_] {
            // One at a time: Qt crashes where one thread releases a connection while another makes one of the
            // same name. The main thread asks for it by its name.
            static std::mutex turn;
            const std::scoped_lock mine(turn);
            static_cast<void>(connectTo(address, name));
        },
        context_.bind([name = name_, then = std::move(then)] { then(QDBusConnection(name)); }), Lane::Apart);
}

} // namespace amberquill::desktop
