#pragma once

#include "platform/MainQueue.h"

#include <QByteArray>
#include <QDBusConnection>
#include <QString>
#include <functional>

namespace amberquill::desktop {

// Tells the connection to the session bus to use now: another one once the bus has gone and come back, one
// that is not connected where there is none. The first call may connect, which takes a moment. Main thread
// only.
using CurrentBus = std::function<QDBusConnection()>;

// Connects to a bus while the main thread goes on: one that hangs keeps whoever connects to it waiting. Main
// thread only.
class AsyncBusConnector {
public:
    // Where the bus is, and what Qt is to call the connection.
    AsyncBusConnector(QByteArray address, QString name, MainQueue& queue);
    AsyncBusConnector(const AsyncBusConnector&) = delete;
    AsyncBusConnector& operator=(const AsyncBusConnector&) = delete;
    ~AsyncBusConnector() = default;

    using Connected = std::function<void(const QDBusConnection&)>;

    // Makes the connection, in place of an earlier one. `then` is called later with one that is connected, or
    // with one that is not where there is no bus that answers in time; not at all if this is destroyed first.
    void connect(Connected then);

private:
    QByteArray address_;
    QString name_;
    MainQueue& queue_;
    Context context_;
};

} // namespace amberquill::desktop
