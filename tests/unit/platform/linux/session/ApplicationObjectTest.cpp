#include "platform/linux/session/ApplicationObject.h"

#include "support/PrivateBus.h"
#include "support/WaitUntil.h"

#include <QDBusMessage>
#include <QDBusPendingCall>
#include <gtest/gtest.h>

using namespace amberquill;
using namespace amberquill::desktop;
using namespace Qt::StringLiterals;
using namespace std::chrono_literals;

namespace {

using RequestKind = ApplicationRequest::Kind;

class ApplicationObjectTest : public testing::Test {
protected:
    // A connection that owns the program's name.
    BusConnection owner() {
        BusConnection connection = connectToBus(bus_.address().toUtf8(), 10s);
        EXPECT_EQ(takeName(*connection, applicationBusName, 10s), true);
        return connection;
    }

    void serve(BusConnection connection) {
        object_ = std::make_unique<ApplicationObject>(
            std::move(connection), [this](const ApplicationRequest& request) { requests_ += request; });
    }

    static QDBusMessage message(const QString& interface, const QString& method,
                                const QVariantList& arguments) {
        QDBusMessage message = QDBusMessage::createMethodCall(
            QString::fromUtf8(applicationBusName), QString::fromUtf8(applicationBusPath), interface, method);
        message.setArguments(arguments);
        return message;
    }

    // The answer to another program's call.
    QDBusMessage answer(const QString& interface, const QString& method, const QVariantList& arguments = {}) {
        const QDBusPendingCall call = client_.asyncCall(message(interface, method, arguments));
        EXPECT_TRUE(waitUntil([&] { return call.isFinished(); }));
        return call.reply();
    }

    QDBusMessage action(const QString& name, const QVariantMap& data = {}) {
        return answer(u"org.freedesktop.Application"_s, u"ActivateAction"_s,
                      {name, QVariant::fromValue(QVariantList()), data});
    }

    PrivateBus bus_;
    QDBusConnection client_ = bus_.connect();
    std::unique_ptr<ApplicationObject> object_;
    QList<ApplicationRequest> requests_;
};

} // namespace

TEST_F(ApplicationObjectTest, CarriesOutCallsOfOtherPrograms) {
    serve(owner());
    const QVariantMap token = {{u"activation-token"_s, u"T"_s}};
    EXPECT_EQ(answer(u"org.freedesktop.Application"_s, u"Activate"_s, {token}).type(),
              QDBusMessage::ReplyMessage);
    EXPECT_EQ(action(u"toggle"_s, token).type(), QDBusMessage::ReplyMessage);
    EXPECT_EQ(action(u"hide"_s).type(), QDBusMessage::ReplyMessage);
    EXPECT_EQ(requests_, (QList<ApplicationRequest>{{RequestKind::Show, u"T"_s, {}},
                                                    {RequestKind::Toggle, u"T"_s, {}},
                                                    {RequestKind::Hide, {}, {}}}));
}

TEST_F(ApplicationObjectTest, UnknownCallsAreAnsweredWithAnError) {
    serve(owner());
    EXPECT_EQ(action(u"explode"_s).errorName(), u"org.freedesktop.DBus.Error.InvalidArgs"_s);
    EXPECT_EQ(answer(u"org.freedesktop.Application"_s, u"Explode"_s).errorName(),
              u"org.freedesktop.DBus.Error.UnknownMethod"_s);
    EXPECT_TRUE(requests_.isEmpty());
}

TEST_F(ApplicationObjectTest, HasIntrospectionData) {
    serve(owner());
    const QDBusMessage reply = answer(u"org.freedesktop.DBus.Introspectable"_s, u"Introspect"_s);
    const QString text = reply.arguments().value(0).toString();
    EXPECT_TRUE(text.contains(u"<interface name=\"org.freedesktop.Application\">"_s));
    EXPECT_TRUE(text.contains(u"<method name=\"ActivateAction\">"_s));
}

TEST_F(ApplicationObjectTest, CallsDuringTheStartAreCarriedOutAtOnce) {
    BusConnection connection = owner();
    const QDBusPendingCall early = client_.asyncCall(message(
        u"org.freedesktop.Application"_s, u"Activate"_s, {QVariantMap{{u"desktop-startup-id"_s, u"I"_s}}}));
    // The bus has received the call once it has answered a later call of the same program.
    client_.call(QDBusMessage::createMethodCall(u"org.freedesktop.DBus"_s, u"/org/freedesktop/DBus"_s,
                                                u"org.freedesktop.DBus"_s, u"GetId"_s));
    catchUp(*connection, 10s);
    serve(std::move(connection));
    EXPECT_EQ(requests_, (QList<ApplicationRequest>{{RequestKind::Show, {}, u"I"_s}}));
    EXPECT_TRUE(waitUntil([&] { return early.isFinished(); }));
    EXPECT_FALSE(early.isError());
}

TEST_F(ApplicationObjectTest, ManyCallsAreAllCarriedOut) {
    serve(owner());
    constexpr int count = 120; // the bus limits unanswered calls
    QList<QDBusPendingCall> calls;
    for (int i = 0; i < count; ++i) {
        calls += client_.asyncCall(message(u"org.freedesktop.Application"_s, u"Activate"_s, {QVariantMap()}));
    }
    EXPECT_TRUE(waitUntil([&] { return requests_.size() == count; }));
    EXPECT_TRUE(waitUntil([&] {
        return std::all_of(calls.begin(), calls.end(), [](const auto& call) { return call.isFinished(); });
    }));
}

TEST_F(ApplicationObjectTest, TheBussEndDoesNotEndTheProgram) {
    serve(owner());
    EXPECT_EQ(action(u"show"_s).type(), QDBusMessage::ReplyMessage);
    bus_.stop();
    EXPECT_TRUE(waitUntil([this] { return !client_.isConnected(); }));
    EXPECT_EQ(requests_.size(), 1);
}
