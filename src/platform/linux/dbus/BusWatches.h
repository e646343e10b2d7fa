#pragma once

#include "platform/linux/dbus/BusConnection.h"

#include <QObject>
#include <QSocketNotifier>
#include <map>

namespace amberquill::desktop {

// Runs a connection on the main thread's event loop: reads and writes when its socket is ready, without
// blocking, and passes messages to the connection's registered handlers. Call `dispatch` for messages that
// arrived earlier.
class BusWatches final : public QObject {
    Q_OBJECT

public:
    // The connection outlives this object, and is not used for blocking calls meanwhile.
    explicit BusWatches(DBusConnection& connection);
    ~BusWatches() override;

    BusWatches(const BusWatches&) = delete;
    BusWatches& operator=(const BusWatches&) = delete;

    // Passes on the messages that have arrived; if there are many, the rest in later turns of the event loop.
    void dispatch();

private:
    static dbus_bool_t add(DBusWatch* watch, void* self);
    static void remove(DBusWatch* watch, void* self);
    static void toggle(DBusWatch* watch, void* self);
    static void statusChanged(DBusConnection* connection, DBusDispatchStatus status, void* self);

    void ready(DBusWatch* watch);
    void dispatchLater();

    struct DeleteLater {
        void operator()(QSocketNotifier* notifier) const {
            notifier->setEnabled(false);
            notifier->deleteLater();
        }
    };

    DBusConnection& connection_;
    std::map<DBusWatch*, std::unique_ptr<QSocketNotifier, DeleteLater>> notifiers_;
    bool dispatchIsDue_ = false;
};

} // namespace amberquill::desktop
