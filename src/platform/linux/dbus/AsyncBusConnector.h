#pragma once

#include "platform/MainQueue.h"

#include <QByteArray>
#include <QDBusConnection>
#include <QString>
#include <functional>

namespace amberquill::desktop {

// Returns the current connection to the session bus: a new one after the bus was lost and found again, one
// that is not connected if there is no bus. The first call may connect, which takes a moment. Main thread
// only.
using CurrentBus = std::function<QDBusConnection()>;

// Connects to a bus on a background thread, because a bus that hangs blocks the connecting thread. Use it on
// the main thread only.
class AsyncBusConnector {
public:
    // `address`: of the bus. `name`: Qt's name for the connection.
    AsyncBusConnector(QByteArray address, QString name, MainQueue& queue);
    AsyncBusConnector(const AsyncBusConnector&) = delete;
    AsyncBusConnector& operator=(const AsyncBusConnector&) = delete;
    ~AsyncBusConnector() = default;

    using Connected = std::function<void(const QDBusConnection&)>;

    // Makes the connection, in place of an earlier one. Calls `then` later: with the connection, or with one
    // that is not connected if no bus answers in time. Does not call it if this object is destroyed first.
    void connect(Connected then);

private:
    QByteArray address_;
    QString name_;
    MainQueue& queue_;
    Context context_;
};

} // namespace amberquill::desktop
