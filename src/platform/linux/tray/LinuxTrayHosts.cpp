#include "platform/linux/tray/LinuxTrayHosts.h"

#include <QDBusConnection>
#include <QDBusMessage>
#include <QDBusPendingCallWatcher>
#include <QDBusPendingReply>
#include <QDBusServiceWatcher>
#include <QDBusVariant>
#include <QGuiApplication>
#include <qpa/qplatformnativeinterface.h>
#include <utility>

namespace amberquill::desktop {
namespace {

const QString service = QStringLiteral("org.kde.StatusNotifierWatcher");
const QString path = QStringLiteral("/StatusNotifierWatcher");

xcb_connection_t* xConnection() {
    if (QGuiApplication::platformName() != QLatin1String("xcb")) {
        return nullptr;
    }
    auto* native = QGuiApplication::platformNativeInterface();
    return static_cast<xcb_connection_t*>(native->nativeResourceForIntegration("connection"));
}

} // namespace

LinuxTrayHosts::LinuxTrayHosts() = default;
LinuxTrayHosts::~LinuxTrayHosts() = default;

void LinuxTrayHosts::follow(std::function<void()> came) {
    came_ = std::move(came);
    if (!watcher_) {
        QDBusConnection bus = QDBusConnection::sessionBus();
        watcher_ =
            std::make_unique<QDBusServiceWatcher>(service, bus, QDBusServiceWatcher::WatchForRegistration);
        connect(watcher_.get(), &QDBusServiceWatcher::serviceRegistered, this, &LinuxTrayHosts::ask);
        // What collects the items may be there before who shows them.
        bus.connect(service, path, service, QStringLiteral("StatusNotifierHostRegistered"), this,
                    SLOT(ask()));
        if (xcb_connection_t* connection = xConnection()) {
            olderTrays_ = std::make_unique<OlderTrays>(connection, [this] { ask(); });
            qGuiApp->installNativeEventFilter(olderTrays_.get());
        }
    }
    ask();
}

void LinuxTrayHosts::ask() {
    QDBusMessage question = QDBusMessage::createMethodCall(
        service, path, QStringLiteral("org.freedesktop.DBus.Properties"), QStringLiteral("Get"));
    question << service << QStringLiteral("IsStatusNotifierHostRegistered");
    question.setAutoStartService(false);
    auto* call = new QDBusPendingCallWatcher(QDBusConnection::sessionBus().asyncCall(question), this);
    connect(call, &QDBusPendingCallWatcher::finished, this, [this, call] {
        call->deleteLater();
        const QDBusPendingReply<QDBusVariant> answer = *call;
        const bool hasHost = answer.isValid() && answer.value().variant().toBool();
        if (hasHost || (olderTrays_ && olderTrays_->isThere())) {
            came_();
        }
    });
}

} // namespace amberquill::desktop
