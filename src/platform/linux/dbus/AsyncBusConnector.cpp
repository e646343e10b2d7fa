#include "platform/linux/dbus/AsyncBusConnector.h"

#include "platform/MainQueue.h"
#include "platform/linux/dbus/BusConnection.h"

#include <mutex>
#include <thread>
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

struct AsyncBusConnector::Late {
    std::mutex mutex;
    MainQueue* queue = nullptr; // null: nobody waits any more
};

AsyncBusConnector::AsyncBusConnector(QByteArray address, QString name, MainQueue& queue)
    : address_(std::move(address))
    , name_(std::move(name))
    , late_(std::make_shared<Late>()) {
    late_->queue = &queue;
}

AsyncBusConnector::~AsyncBusConnector() {
    const std::scoped_lock lock(late_->mutex);
    late_->queue = nullptr;
}

void AsyncBusConnector::connect(Connected then) {
    std::thread([late = late_, address = address_, name = name_, then = std::move(then)]() mutable {
        // One at a time, to the end of `bus`: Qt does not bear one thread letting go of a connection while
        // another makes one of the same name.
        static std::mutex turn;
        const std::scoped_lock mine(turn);
        const QDBusConnection bus = connectTo(address, name);
        const std::scoped_lock lock(late->mutex);
        if (late->queue == nullptr) {
            return;
        }
        late->queue->post([late, bus, then = std::move(then)] {
            if (late->queue != nullptr) {
                then(bus);
            }
        });
    }).detach();
}

} // namespace amberquill::desktop
