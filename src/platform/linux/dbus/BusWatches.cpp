#include "platform/linux/dbus/BusWatches.h"

namespace amberquill::desktop {

namespace {

// Messages passed on in one turn of the event loop.
constexpr int mostAtOnce = 32;

} // namespace

BusWatches::BusWatches(DBusConnection& connection)
    : connection_(connection) {
    dbus_connection_set_watch_functions(&connection_, add, remove, toggle, this, nullptr);
    dbus_connection_set_dispatch_status_function(&connection_, statusChanged, this, nullptr);
}

BusWatches::~BusWatches() {
    dbus_connection_set_dispatch_status_function(&connection_, nullptr, nullptr, nullptr);
    dbus_connection_set_watch_functions(&connection_, nullptr, nullptr, nullptr, nullptr, nullptr);
}

void BusWatches::dispatch() {
    dispatchIsDue_ = false;
    for (int i = 0; i < mostAtOnce; ++i) {
        if (dbus_connection_dispatch(&connection_) != DBUS_DISPATCH_DATA_REMAINS) {
            return;
        }
    }
    dispatchLater();
}

dbus_bool_t BusWatches::add(DBusWatch* watch, void* self) {
    auto& watches = *static_cast<BusWatches*>(self);
    const bool reads = (dbus_watch_get_flags(watch) & DBUS_WATCH_READABLE) != 0;
    auto& notifier = watches.notifiers_[watch];
    notifier.reset(new QSocketNotifier(dbus_watch_get_unix_fd(watch),
                                       reads ? QSocketNotifier::Read : QSocketNotifier::Write));
    notifier->setEnabled(dbus_watch_get_enabled(watch) != FALSE);
    connect(notifier.get(), &QSocketNotifier::activated, &watches,
            [&watches, watch] { watches.ready(watch); });
    return TRUE;
}

void BusWatches::remove(DBusWatch* watch, void* self) {
    static_cast<BusWatches*>(self)->notifiers_.erase(watch);
}

void BusWatches::toggle(DBusWatch* watch, void* self) {
    auto& notifiers = static_cast<BusWatches*>(self)->notifiers_;
    if (const auto found = notifiers.find(watch); found != notifiers.end()) {
        found->second->setEnabled(dbus_watch_get_enabled(watch) != FALSE);
    }
}

void BusWatches::statusChanged(DBusConnection* /*connection*/, DBusDispatchStatus status, void* self) {
    if (status == DBUS_DISPATCH_DATA_REMAINS) {
        // Not in this callback: libdbus holds its lock.
        static_cast<BusWatches*>(self)->dispatchLater();
    }
}

void BusWatches::ready(DBusWatch* watch) {
    if (notifiers_.contains(watch)) {
        dbus_watch_handle(watch, dbus_watch_get_flags(watch));
        dispatch();
    }
}

void BusWatches::dispatchLater() {
    if (!std::exchange(dispatchIsDue_, true)) {
        QMetaObject::invokeMethod(this, &BusWatches::dispatch, Qt::QueuedConnection);
    }
}

} // namespace amberquill::desktop
