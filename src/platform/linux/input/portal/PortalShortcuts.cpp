#include "platform/linux/input/portal/PortalShortcuts.h"

#include <utility>

namespace amberquill::desktop {

using namespace Qt::StringLiterals;

PortalShortcuts::PortalShortcuts(MainQueue& queue, Connect connect)
    : queue_(queue)
    , connect_(std::move(connect)) {
    registerPortalTypes();
}

// A session binds its shortcuts once, so every change needs another session.
void PortalShortcuts::add(std::uint32_t id, const KeyChord& chord) {
    shortcuts_.insert_or_assign(id, chord);
    dropSession();
    ask(requestDelay);
}

void PortalShortcuts::remove(std::uint32_t id) {
    if (shortcuts_.erase(id) == 0) {
        return;
    }
    dropSession();
    due_.cancel();
    if (!shortcuts_.empty()) {
        ask(requestDelay);
    }
}

// Delayed, because the portal of a bus that has just started may not run yet.
void PortalShortcuts::serviceCameBack() {
    if (!shortcuts_.empty() && !session_) {
        retries_ = 1;
        ask(0);
    }
}

void PortalShortcuts::ask(double secondsFromNow) {
    due_ = queue_.postAfter(secondsFromNow, [this] { begin(); });
}

void PortalShortcuts::askAgain(double secondsFromNow) {
    if (queue_.now() - begun_ >= stableSeconds) {
        retries_ = 0;
    }
    due_.cancel();
    if (!shortcuts_.empty() && retries_ < maximumRetries) {
        ++retries_;
        ask(secondsFromNow);
    }
}

void PortalShortcuts::begin() {
    begun_ = queue_.now();
    if (bus_) {
        openSession();
    } else if (!std::exchange(isConnecting_, true)) {
        connect_(context_.bind([this](const QDBusConnection& bus) { connected(bus); }));
    }
}

void PortalShortcuts::connected(const QDBusConnection& bus) {
    isConnecting_ = false;
    if (!bus.isConnected()) {
        // Try again only if there was a bus before.
        if (retries_ > 0) {
            askAgain(retryDelay);
        }
        return;
    }
    bus_ = bus;
    bus_->connect(QString(), u"/org/freedesktop/DBus/Local"_s, u"org.freedesktop.DBus.Local"_s,
                  u"Disconnected"_s, this, SLOT(busLost()));
    watcher_ = std::make_unique<QDBusServiceWatcher>(u"org.freedesktop.portal.Desktop"_s, *bus_,
                                                     QDBusServiceWatcher::WatchForOwnerChange);
    connect(watcher_.get(), &QDBusServiceWatcher::serviceOwnerChanged, this,
            [this](const QString& /*name*/, const QString& before, const QString& now) {
                portalChanged(before, now);
            });
    openSession();
}

// The shortcuts may have been removed while the bus was being connected.
void PortalShortcuts::openSession() {
    if (shortcuts_.empty()) {
        return;
    }
    session_ = std::make_unique<PortalSession>(*bus_, shortcuts_, ++sessions_);
    connect(session_.get(), &PortalSession::pressed, this,
            [this](std::uint32_t id, const QString& token) { deliver(id, {.token = token}); });
    connect(session_.get(), &PortalSession::ended, this, [this] {
        dropSession();
        askAgain(retryDelay);
    });
    connect(session_.get(), &PortalSession::unavailable, this, &PortalShortcuts::dropSession);
}

void PortalShortcuts::portalChanged(const QString& before, const QString& now) {
    if (!before.isEmpty()) {
        dropSession();
    }
    if (session_) {
        // Our own request has started the portal.
        return;
    }
    askAgain(now.isEmpty() ? retryDelay : 0);
}

void PortalShortcuts::busLost() {
    dropSession();
    watcher_.reset();
    bus_.reset();
    askAgain(retryDelay);
}

// Deleted later: the session may be the caller.
void PortalShortcuts::dropSession() {
    if (session_) {
        session_->disconnect(this);
        session_.release()->deleteLater();
    }
}

} // namespace amberquill::desktop
