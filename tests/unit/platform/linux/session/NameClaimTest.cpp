#include "platform/linux/session/NameClaim.h"

#include "platform/linux/session/ApplicationObject.h"
#include "support/PrivateBus.h"
#include "support/WaitUntil.h"

#include <QDBusPendingCall>
#include <future>
#include <gtest/gtest.h>

using namespace amberquill;
using namespace amberquill::desktop;
using namespace Qt::StringLiterals;
using namespace std::chrono_literals;

namespace {

using ClaimKind = ClaimResult::Kind;

constexpr ClaimBounds patient{20s, 20s, 20s};
const auto always = [] { return true; };

const StartupRequest startup{{ApplicationRequest::Kind::Show, u"token"_s, u"id"_s}, false};

class NameClaimTest : public testing::Test {
protected:
    [[nodiscard]] QByteArray address() const { return bus_.address().toUtf8(); }

    // The event loop runs meanwhile, as in a program that owns the name.
    ClaimResult claim(const StartupRequest& what = startup, const ClaimBounds& bounds = patient) {
        auto result = std::async(std::launch::async, [&, address = address()] {
            return claimName(address, what, bounds, always);
        });
        EXPECT_TRUE(waitUntil([&] { return result.wait_for(0s) == std::future_status::ready; }));
        return result.get();
    }

    // An owner of the name that never answers.
    [[nodiscard]] BusConnection silentOwner() const {
        BusConnection connection = connectToBus(address(), 20s);
        EXPECT_EQ(takeName(*connection, applicationBusName, 20s), true);
        return connection;
    }

    // The request that has reached the owner of the name.
    static BusMessage receiveRequest(DBusConnection& owner) {
        BusMessage message;
        const auto hasRequest = [&] {
            dbus_connection_read_write(&owner, 10);
            message.reset(dbus_connection_pop_message(&owner));
            return message && dbus_message_has_member(message.get(), "Activate") != FALSE;
        };
        return waitUntil(hasRequest) ? std::move(message) : nullptr;
    }

    PrivateBus bus_;
};

} // namespace

TEST_F(NameClaimTest, TheFirstInstanceOwnsTheName) {
    const ClaimResult first = claim();
    EXPECT_EQ(first.kind, ClaimKind::Owner);
    EXPECT_NE(first.connection, nullptr);
}

TEST_F(NameClaimTest, TheSecondInstanceForwardsItsRequest) {
    QList<ApplicationRequest> requests;
    const ApplicationObject running(claim().connection,
                                    [&](const ApplicationRequest& request) { requests += request; });
    const ClaimResult second = claim();
    EXPECT_EQ(second.kind, ClaimKind::HandedOver);
    EXPECT_EQ(second.connection, nullptr);
    EXPECT_EQ(requests, QList<ApplicationRequest>{startup.request});
    const StartupRequest toggle{{ApplicationRequest::Kind::Toggle, u"token"_s, {}}, false};
    EXPECT_EQ(claim(toggle).kind, ClaimKind::HandedOver);
    EXPECT_EQ(requests, (QList<ApplicationRequest>{startup.request, toggle.request}));
}

TEST_F(NameClaimTest, WithoutABusThereIsNothingToClaim) {
    for (const char* const nowhere : {"", "disabled:", "unix:path=/nowhere/at/all", "autolaunch:", "junk"}) {
        EXPECT_EQ(claimName(nowhere, startup, patient, always).kind, ClaimKind::NoBus) << nowhere;
    }
}

TEST_F(NameClaimTest, TheWaitForAHangingBusIsLimited) {
    bus_.freeze();
    EXPECT_EQ(claimName(address(), startup, {20ms, 20ms, 20ms}, always).kind, ClaimKind::NoBus);
    bus_.thaw();
}

TEST_F(NameClaimTest, TheWaitForAHangingOwnerIsLimited) {
    const BusConnection owner = silentOwner();
    EXPECT_EQ(claim(startup, {20s, 20s, 20ms}).kind, ClaimKind::Stranger);
}

TEST_F(NameClaimTest, AnOwnerThatAnswersWithAnErrorKeepsTheName) {
    QDBusConnection other = bus_.connect();
    ASSERT_TRUE(other.registerService(QString::fromUtf8(applicationBusName)));
    EXPECT_EQ(claim().kind, ClaimKind::Stranger);
}

TEST_F(NameClaimTest, AnEndingOwnersNameIsTakenOver) {
    BusConnection owner = silentOwner();
    auto second =
        std::async(std::launch::async, [this] { return claimName(address(), startup, patient, always); });
    ASSERT_TRUE(receiveRequest(*owner));
    owner.reset();
    const ClaimResult result = second.get();
    EXPECT_EQ(result.kind, ClaimKind::Owner);
    EXPECT_NE(result.connection, nullptr);
}

TEST_F(NameClaimTest, AStartThatHasGoneOnForwardsNothing) {
    BusConnection owner = silentOwner();
    EXPECT_EQ(claimName(address(), startup, patient, [] { return false; }).kind, ClaimKind::Stranger);
    catchUp(*owner, 20s);
    while (const BusMessage message{dbus_connection_pop_message(owner.get())}) {
        EXPECT_EQ(dbus_message_has_member(message.get(), "Activate"), FALSE);
    }
}

TEST_F(NameClaimTest, AProgramStartedByTheBusReceivesTheCallThatStartedIt) {
    bus_.makeActivatable(applicationBusName, "/bin/sleep 60");
    QDBusConnection caller = bus_.connect();
    QDBusMessage toggle = QDBusMessage::createMethodCall(
        QString::fromUtf8(applicationBusName), QString::fromUtf8(applicationBusPath),
        u"org.freedesktop.Application"_s, u"ActivateAction"_s);
    toggle << u"toggle"_s << QVariant::fromValue(QVariantList()) << QVariantMap();
    const QDBusPendingCall call = caller.asyncCall(toggle);
    // The bus has received the call once it has answered a later call of the same program.
    caller.call(QDBusMessage::createMethodCall(u"org.freedesktop.DBus"_s, u"/org/freedesktop/DBus"_s,
                                               u"org.freedesktop.DBus"_s, u"GetId"_s));
    ClaimResult result = claim({{}, true});
    ASSERT_EQ(result.kind, ClaimKind::Owner);
    QList<ApplicationRequest> requests;
    const ApplicationObject object(std::move(result.connection),
                                   [&](const ApplicationRequest& request) { requests += request; });
    EXPECT_EQ(requests, (QList<ApplicationRequest>{{ApplicationRequest::Kind::Toggle, {}, {}}}));
    EXPECT_TRUE(waitUntil([&] { return call.isFinished(); }));
    EXPECT_FALSE(call.isError());
}

TEST_F(NameClaimTest, AStartContinuesAtOnceWithTheOwnersAnswer) {
    const ApplicationObject running(claim().connection, [](const ApplicationRequest&) {});
    std::promise<void> told;
    NameClaim second(address(), startup, patient, [&told] { told.set_value(); });
    auto isTold = told.get_future();
    EXPECT_TRUE(waitUntil([&] { return isTold.wait_for(0s) == std::future_status::ready; }));
    const auto result = second.settle({});
    ASSERT_TRUE(result);
    EXPECT_EQ(result->kind, ClaimKind::HandedOver);
}

TEST_F(NameClaimTest, ADestroyedClaimEndsNoProcess) {
    const BusConnection owner = silentOwner();
    auto held = std::make_shared<bool>();
    const std::weak_ptr<bool> heldByThread = held;
    auto second =
        std::make_unique<NameClaim>(address(), startup, patient, [held = std::move(held)] { ADD_FAILURE(); });
    const BusMessage request = receiveRequest(*owner);
    ASSERT_TRUE(request);
    second.reset();
    const BusMessage reply(dbus_message_new_method_return(request.get()));
    dbus_connection_send(owner.get(), reply.get(), nullptr);
    dbus_connection_flush(owner.get());
    EXPECT_TRUE(waitUntil([&heldByThread] { return heldByThread.expired(); })) << "the thread does not end";
}

TEST_F(NameClaimTest, AStartContinuesDespiteAHangingBusAndUsesItsLateAnswer) {
    bus_.freeze();
    std::promise<ClaimKind> later;
    NameClaim claim(address(), startup, {20s, 20ms, 20s}, [] { ADD_FAILURE(); });
    EXPECT_EQ(claim.settle([&later](const ClaimResult& result) { later.set_value(result.kind); }).has_value(),
              false);
    bus_.thaw();
    auto told = later.get_future();
    ASSERT_TRUE(waitUntil([&] { return told.wait_for(0s) == std::future_status::ready; }))
        << "what became of the name is never told";
    EXPECT_EQ(told.get(), ClaimKind::Owner);
}

TEST_F(NameClaimTest, AnOwnerFoundLateDoesNotEndTheStart) {
    const ApplicationObject running(claim().connection, [](const ApplicationRequest&) { ADD_FAILURE(); });
    bus_.freeze();
    std::promise<ClaimKind> later;
    NameClaim second(address(), startup, {20s, 20ms, 20s}, [] { ADD_FAILURE(); });
    EXPECT_FALSE(second.settle([&later](const ClaimResult& result) { later.set_value(result.kind); }));
    bus_.thaw();
    auto told = later.get_future();
    ASSERT_TRUE(waitUntil([&] { return told.wait_for(0s) == std::future_status::ready; }))
        << "what became of the name is never told";
    EXPECT_EQ(told.get(), ClaimKind::Stranger);
}
