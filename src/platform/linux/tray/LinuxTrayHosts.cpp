#include "platform/linux/tray/LinuxTrayHosts.h"

#include "platform/linux/tray/XEmbedTrays.h"

#include <QDBusMessage>
#include <QDBusPendingCallWatcher>
#include <QDBusPendingReply>
#include <QDBusServiceWatcher>
#include <QDBusVariant>
#include <QGuiApplication>
#include <QLoggingCategory>
#include <QWindow>
#include <algorithm>
#include <qpa/qplatformnativeinterface.h>
#include <utility>

namespace amberquill::desktop {
namespace {

Q_LOGGING_CATEGORY(trayLog, "amberquill.tray", QtCriticalMsg)

const QString service = QStringLiteral("org.kde.StatusNotifierWatcher");
const QString path = QStringLiteral("/StatusNotifierWatcher");

xcb_connection_t* xConnection() {
    if (QGuiApplication::platformName() != QLatin1String("xcb")) {
        return nullptr;
    }
    auto* native = QGuiApplication::platformNativeInterface();
    return static_cast<xcb_connection_t*>(native->nativeResourceForIntegration("connection"));
}

// Qt's window in an XEmbed tray, found by the name that Qt itself uses.
const QWindow* itemWindow() {
    const QWindowList windows = QGuiApplication::allWindows();
    const auto found = std::find_if(windows.begin(), windows.end(), [](const QWindow* window) {
        return window->objectName() == QLatin1String("QSystemTrayIconSysWindow") &&
               window->handle() != nullptr;
    });
    return found != windows.end() ? *found : nullptr;
}

} // namespace

LinuxTrayHosts::LinuxTrayHosts(CurrentBus sessionBus)
    : sessionBus_(std::move(sessionBus)) {}

LinuxTrayHosts::~LinuxTrayHosts() = default;

void LinuxTrayHosts::follow(std::function<void()> came, std::function<void()> gone) {
    came_ = std::move(came);
    gone_ = std::move(gone);
    if (!watcher_) {
        followBus();
        if (xcb_connection_t* connection = xConnection()) {
            xembedTrays_ = std::make_unique<XEmbedTrays>(connection, [this] { ask(); });
            qGuiApp->installNativeEventFilter(xembedTrays_.get());
        }
    }
    ask();
}

void LinuxTrayHosts::followBus() {
    bus_ = sessionBus_();
    watcher_ =
        std::make_unique<QDBusServiceWatcher>(service, *bus_, QDBusServiceWatcher::WatchForRegistration);
    connect(watcher_.get(), &QDBusServiceWatcher::serviceRegistered, this, &LinuxTrayHosts::ask);
    // The watcher service may start before a host does. Any sender: for a named sender, Qt would block to
    // look up its owner.
    bus_->connect(QString(), path, service, QStringLiteral("StatusNotifierHostRegistered"), this,
                  SLOT(ask()));
}

void LinuxTrayHosts::busCameBack() {
    if (!watcher_) {
        return;
    }
    followBus();
    // An item in an XEmbed tray needs no bus.
    if (xConnection() == nullptr || itemWindow() == nullptr) {
        gone_();
    }
    ask();
}

QImage LinuxTrayHosts::itemPicture() const {
    xcb_connection_t* connection = xConnection();
    const QWindow* item = connection != nullptr ? itemWindow() : nullptr;
    return item != nullptr ? embeddedPicture(connection, static_cast<xcb_window_t>(item->winId())) : QImage();
}

void LinuxTrayHosts::ask() {
    QDBusMessage question = QDBusMessage::createMethodCall(
        service, path, QStringLiteral("org.freedesktop.DBus.Properties"), QStringLiteral("Get"));
    question << service << QStringLiteral("IsStatusNotifierHostRegistered");
    question.setAutoStartService(false);
    auto* call = new QDBusPendingCallWatcher(bus_->asyncCall(question), this);
    connect(call, &QDBusPendingCallWatcher::finished, this, [this, call] {
        call->deleteLater();
        const QDBusPendingReply<QDBusVariant> answer = *call;
        const bool hasHost = answer.isValid() && answer.value().variant().toBool();
        const bool hasXEmbedTray = xembedTrays_ && xembedTrays_->isThere();
        qCDebug(trayLog) << "host of status notifier items:" << hasHost << "XEmbed tray:" << hasXEmbedTray;
        if (hasHost || hasXEmbedTray) {
            came_();
        }
    });
}

} // namespace amberquill::desktop
