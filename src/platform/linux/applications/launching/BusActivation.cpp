#include "platform/linux/applications/launching/BusActivation.h"

#include <QDBusError>
#include <QDBusMessage>
#include <QDBusPendingCallWatcher>
#include <QLatin1StringView>
#include <QLoggingCategory>
#include <QVariantMap>
#include <algorithm>
#include <array>

namespace amberquill::desktop {

namespace {

using namespace Qt::StringLiterals;

Q_LOGGING_CATEGORY(busLog, "amberquill.launching", QtCriticalMsg)

constexpr qsizetype maximumBusName = 255;
// Longer than the bus's own two minutes for starting a service, because the bus's error says more than a
// timeout.
constexpr int timeoutMilliseconds = 130'000;

bool isBusNameElement(QStringView element) {
    const auto isWordCharacter = [](QChar c) {
        return (c >= u'a' && c <= u'z') || (c >= u'A' && c <= u'Z') || (c >= u'0' && c <= u'9') ||
               c == u'_' || c == u'-';
    };
    return !element.isEmpty() && !(element.front() >= u'0' && element.front() <= u'9') &&
           std::all_of(element.begin(), element.end(), isWordCharacter);
}

bool isWellKnownName(const QString& name) {
    const QList<QStringView> elements = QStringView(name).split(u'.');
    return name.size() <= maximumBusName && elements.size() >= 2 &&
           std::all_of(elements.begin(), elements.end(), isBusNameElement);
}

BusActivationResult resultFor(const QDBusMessage& reply) {
    if (reply.type() != QDBusMessage::ErrorMessage) {
        return BusActivationResult::Started;
    }
    const QString error = reply.errorName();
    qCDebug(busLog) << "activation failed:" << reply.service() << error << reply.errorMessage();
    constexpr std::array unavailable = {
        QLatin1StringView("org.freedesktop.DBus.Error.ServiceUnknown"),
        QLatin1StringView("org.freedesktop.DBus.Error.NameHasNoOwner"),
        QLatin1StringView("org.freedesktop.DBus.Error.Disconnected"),
        // Errors of systemd, on buses that start services through it.
        QLatin1StringView("org.freedesktop.systemd1.NoSuchUnit"),
        QLatin1StringView("org.freedesktop.systemd1.UnitMasked"),
        QLatin1StringView("org.freedesktop.systemd1.LoadFailed"),
    };
    if (std::find(unavailable.begin(), unavailable.end(), error) != unavailable.end() ||
        error.startsWith(QLatin1StringView("org.freedesktop.DBus.Error.Spawn."))) {
        return BusActivationResult::Unavailable;
    }
    // The service runs and has the request, but answers slowly.
    return error == QLatin1StringView("org.freedesktop.DBus.Error.NoReply") ? BusActivationResult::Started
                                                                            : BusActivationResult::Failed;
}

} // namespace

std::optional<BusAddress> busAddress(const QString& applicationId) {
    if (!isWellKnownName(applicationId)) {
        return std::nullopt;
    }
    QString path = u'/' + applicationId;
    path.replace(u'.', u'/').replace(u'-', u'_');
    return BusAddress{applicationId, path};
}

BusActivation::BusActivation(CurrentBus sessionBus)
    : sessionBus_(std::move(sessionBus)) {}

void BusActivation::activate(const BusAddress& address, const QString& token,
                             std::function<void(BusActivationResult)> then) {
    const QDBusConnection bus = sessionBus_();
    if (!bus.isConnected()) {
        then(BusActivationResult::Unavailable);
        return;
    }
    QVariantMap platformData;
    if (!token.isEmpty()) {
        platformData.insert(u"desktop-startup-id"_s, token);
        platformData.insert(u"activation-token"_s, token);
    }
    QDBusMessage message = QDBusMessage::createMethodCall(address.name, address.path,
                                                          u"org.freedesktop.Application"_s, u"Activate"_s);
    message << platformData;
    auto* const call = new QDBusPendingCallWatcher(bus.asyncCall(message, timeoutMilliseconds), this);
    connect(call, &QDBusPendingCallWatcher::finished, this, [call, then = std::move(then)] {
        call->deleteLater();
        then(resultFor(call->reply()));
    });
}

} // namespace amberquill::desktop
