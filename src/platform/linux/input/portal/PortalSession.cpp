#include "platform/linux/input/portal/PortalSession.h"

#include "platform/linux/input/InputDevices.h"

#include <QDBusPendingCallWatcher>
#include <QDBusPendingReply>
#include <algorithm>
#include <utility>

namespace amberquill::desktop {

namespace {

using namespace Qt::StringLiterals;

// The bus may have to start the portal.
constexpr int longestWaitMilliseconds = 120'000;

const QString portalName = u"org.freedesktop.portal.Desktop"_s;
const QString portalPath = u"/org/freedesktop/portal/desktop"_s;
const QString shortcutsInterface = u"org.freedesktop.portal.GlobalShortcuts"_s;
const QString requestInterface = u"org.freedesktop.portal.Request"_s;
const QString sessionInterface = u"org.freedesktop.portal.Session"_s;
const QString programId = u"org.amberquill.Amberquill"_s;

// Empty, because Qt would block to resolve a sender's name. Other programs on the bus gain nothing by faking
// these signals: they may toggle the launcher anyway.
const QString anySender;

QString nameOf(std::uint32_t id) {
    return u"toggle-%1"_s.arg(id);
}

// The object path of the portal's answer to a request with this token.
QString requestPathFor(const QDBusConnection& bus, const QString& token) {
    QString sender = bus.baseService().mid(1);
    sender.replace(u'.', u'_');
    return portalPath + u"/request/"_s + sender + u'/' + token;
}

} // namespace

PortalSession::PortalSession(QDBusConnection bus, std::map<std::uint32_t, KeyChord> shortcuts, int number)
    : bus_(std::move(bus))
    , shortcuts_(std::move(shortcuts))
    , token_(u"amberquill%1"_s.arg(number)) {
    bus_.connect(anySender, portalPath, shortcutsInterface, u"Activated"_s, this,
                 SLOT(activated(QDBusObjectPath, QString, qulonglong, QVariantMap)));
    registerProgram();
}

PortalSession::~PortalSession() {
    if (!handle_.isEmpty()) {
        QDBusMessage close =
            QDBusMessage::createMethodCall(portalName, handle_, sessionInterface, u"Close"_s);
        // A newly started portal would not know the session.
        close.setAutoStartService(false);
        bus_.send(close);
    }
}

// Tells the portal the name of a program that runs outside a sandbox. Older portals lack the method and do
// not need it.
void PortalSession::registerProgram() {
    QDBusMessage call = QDBusMessage::createMethodCall(
        portalName, portalPath, u"org.freedesktop.host.portal.Registry"_s, u"Register"_s);
    call << programId << QVariantMap();
    auto* const watcher = new QDBusPendingCallWatcher(bus_.asyncCall(call, longestWaitMilliseconds), this);
    connect(watcher, &QDBusPendingCallWatcher::finished, this, [this, watcher] {
        watcher->deleteLater();
        createSession();
    });
}

void PortalSession::createSession() {
    // The session's token is constant, because some desktops store shortcuts under it. The shortcuts are
    // passed here as well: some desktops bind them now, and only open their settings at BindShortcuts.
    const QVariantMap options = {{u"session_handle_token"_s, u"amberquill"_s},
                                 {u"shortcuts"_s, QVariant::fromValue(wanted())}};
    request(u"CreateSession"_s, {}, options, [this](const QVariantMap& results) {
        handle_ = sessionIn(results);
        if (handle_.isEmpty()) {
            return;
        }
        bus_.connect(anySender, handle_, sessionInterface, u"Closed"_s, this, SIGNAL(ended()));
        listShortcuts();
    });
}

void PortalSession::listShortcuts() {
    request(u"ListShortcuts"_s, {QVariant::fromValue(QDBusObjectPath(handle_))}, {},
            [this](const QVariantMap& results) {
                const PortalShortcutList known = shortcutsIn(results);
                const bool hasAll =
                    std::all_of(shortcuts_.begin(), shortcuts_.end(), [&](const auto& wanted) {
                        return std::any_of(known.begin(), known.end(), [&](const PortalShortcut& shortcut) {
                            return shortcut.id == nameOf(wanted.first);
                        });
                    });
                if (!hasAll) {
                    bindShortcuts();
                }
            });
}

PortalShortcutList PortalSession::wanted() const {
    PortalShortcutList list;
    for (const auto& [id, chord] : shortcuts_) {
        list += {nameOf(id),
                 {{u"description"_s, u"Amberquill"_s}, {u"preferred_trigger"_s, portalTrigger(chord)}}};
    }
    return list;
}

void PortalSession::bindShortcuts() {
    request(u"BindShortcuts"_s,
            {QVariant::fromValue(QDBusObjectPath(handle_)), QVariant::fromValue(wanted()), QString()}, {},
            [](const QVariantMap& results) {
                // Possibly fewer than requested: the user decides.
                qCDebug(inputLog) << "the portal has bound" << shortcutsIn(results).size() << "shortcuts";
            });
}

void PortalSession::request(const QString& method, QVariantList arguments, QVariantMap options,
                            Response then) {
    const QString token = token_ + u"_%1"_s.arg(++requests_);
    const QString path = requestPathFor(bus_, token);
    // Before the call: the response may arrive before the call returns.
    bus_.connect(anySender, path, requestInterface, u"Response"_s, this,
                 SLOT(responded(uint, QVariantMap, QDBusMessage)));
    requestPath_ = path;
    response_ = std::move(then);
    options.insert(u"handle_token"_s, token);
    QDBusMessage call = QDBusMessage::createMethodCall(portalName, portalPath, shortcutsInterface, method);
    call.setArguments(arguments << options);
    auto* const watcher = new QDBusPendingCallWatcher(bus_.asyncCall(call, longestWaitMilliseconds), this);
    connect(watcher, &QDBusPendingCallWatcher::finished, this, [this, watcher, method] {
        watcher->deleteLater();
        const QDBusPendingReply<QDBusObjectPath> reply = *watcher;
        if (reply.isError()) {
            qCDebug(inputLog) << "the portal has refused" << method << reply.error().name();
            Q_EMIT unavailable();
        }
    });
}

void PortalSession::responded(uint code, const QVariantMap& results, const QDBusMessage& message) {
    if (message.path() != requestPath_) {
        return;
    }
    bus_.disconnect(anySender, requestPath_, requestInterface, u"Response"_s, this,
                    SLOT(responded(uint, QVariantMap, QDBusMessage)));
    requestPath_.clear();
    const Response then = std::exchange(response_, {});
    constexpr uint agreed = 0;
    if (code == agreed) {
        then(results);
    } else {
        qCDebug(inputLog) << "the portal's request has ended with code" << code;
    }
}

void PortalSession::activated(const QDBusObjectPath& session, const QString& shortcut, qulonglong /*time*/,
                              const QVariantMap& options) {
    if (handle_.isEmpty() || session.path() != handle_) {
        return;
    }
    const auto found = std::find_if(shortcuts_.begin(), shortcuts_.end(),
                                    [&](const auto& known) { return nameOf(known.first) == shortcut; });
    if (found != shortcuts_.end()) {
        Q_EMIT pressed(found->first, options.value(u"activation_token"_s).toString());
    }
}

} // namespace amberquill::desktop
