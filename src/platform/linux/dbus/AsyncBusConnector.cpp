#include "platform/linux/dbus/AsyncBusConnector.h"

#include "platform/linux/dbus/BusConnection.h"

#include <mutex>
#include <utility>

namespace amberquill::desktop {

namespace {

// A bus that takes longer to answer the hello message counts as none.
constexpr std::chrono::seconds longestWait{2};

QDBusConnection connectTo(const QByteArray& address, const QString& name) {
    QDBusConnection::disconnectFromBus(name); // the earlier connection
    // Qt connects without a limit and blocks other connections meanwhile, so test the bus with a limit first.
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
            // One at a time: Qt crashes if one thread releases a connection while another makes one of the
            // same name. The main thread looks up the connection by its name.
            static std::mutex turn;
            const std::scoped_lock mine(turn);
            static_cast<void>(connectTo(address, name));
        },
        context_.bind([name = name_, then = std::move(then)] { then(QDBusConnection(name)); }), Lane::Apart);
}

} // namespace amberquill::desktop
