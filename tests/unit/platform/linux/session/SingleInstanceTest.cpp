#include "platform/linux/session/SingleInstance.h"

#include "platform/linux/dbus/BusAddress.h"
#include "platform/linux/queue/EventLoopQueue.h"
#include "support/PrivateBus.h"
#include "support/WaitUntil.h"

#include <QDBusConnectionInterface>
#include <QDBusMessage>
#include <QDBusPendingCall>
#include <gtest/gtest.h>

using namespace amberquill;
using namespace amberquill::desktop;
using namespace Qt::StringLiterals;
using namespace std::chrono_literals;

namespace {

class SingleInstanceTest : public testing::Test {
protected:
    [[nodiscard]] QByteArray address() const { return bus_.address().toUtf8(); }

    // Activates the launcher from another connection and waits until the request is carried out.
    void expectReachable() {
        QDBusConnection client = bus_.connect();
        QDBusMessage activate = QDBusMessage::createMethodCall(
            QString::fromUtf8(applicationBusName), QString::fromUtf8(applicationBusPath),
            u"org.freedesktop.Application"_s, u"Activate"_s);
        activate << QVariantMap();
        client.asyncCall(activate);
        EXPECT_TRUE(waitUntil([this] { return carriedOut_ == 1; }));
    }

    PrivateBus bus_;
    EventLoopQueue queue_;
    int carriedOut_ = 0;
    std::function<void(const ApplicationRequest&)> carryOut_ = [this](const ApplicationRequest&) {
        ++carriedOut_;
    };
};

} // namespace

TEST_F(SingleInstanceTest, IsReachedOverTheBus) {
    NameClaim claim(address(), {}, {20s, 20s, 20s}, [] { ADD_FAILURE(); });
    const SingleInstance instance(claim, address(), queue_, carryOut_);
    EXPECT_TRUE(instance.hasBus());
    expectReachable();
}

TEST_F(SingleInstanceTest, IsReachableOnceASlowBusHasAnswered) {
    bus_.freeze();
    NameClaim claim(address(), {}, {20s, 20ms, 20s}, [] { ADD_FAILURE(); });
    const SingleInstance instance(claim, address(), queue_, carryOut_);
    EXPECT_FALSE(instance.hasBus());
    bus_.thaw();
    EXPECT_TRUE(waitUntil([&] { return instance.hasBus(); }));
    expectReachable();
}

TEST_F(SingleInstanceTest, RunsWithoutABus) {
    NameClaim claim({}, {}, {20s, 20s, 20s}, [] { ADD_FAILURE(); });
    const SingleInstance instance(claim, address(), queue_, carryOut_);
    EXPECT_FALSE(instance.hasBus());
}

TEST_F(SingleInstanceTest, MayEndBeforeTheBusAnswers) {
    bus_.freeze();
    NameClaim claim(address(), {}, {20s, 20ms, 20s}, [] { ADD_FAILURE(); });
    { const SingleInstance instance(claim, address(), queue_, carryOut_); }
    bus_.thaw();
    // The late answer releases the name again.
    EXPECT_TRUE(waitUntil([&] {
        NameClaim again(address(), {}, {20s, 20s, 20s}, [] {});
        const auto result = again.settle({});
        return result && result->kind == ClaimResult::Kind::Owner;
    }));
}

TEST_F(SingleInstanceTest, ReconnectsAsSoonAsTheBussSocketIsBack) {
    // Its retries are minutes apart.
    EventLoopQueue slow(1000);
    int returns = 0;
    NameClaim claim(address(), {}, {20s, 20s, 20s}, [] { ADD_FAILURE(); });
    const SingleInstance instance(claim, address().split(',').first(), slow, carryOut_, [&] { ++returns; });
    bus_.stop();
    ASSERT_TRUE(waitUntil([&] { return !instance.hasBus(); }));
    bus_.startAgain();
    EXPECT_TRUE(waitUntil([&] { return returns == 1; }));
    expectReachable();
}

TEST(BusSocketFolder, IsTheFolderOfTheFirstAddress) {
    EXPECT_EQ(busSocketFolder("unix:path=/run/user/1/bus"), u"/run/user/1/"_s);
    EXPECT_EQ(busSocketFolder("unix:guid=1,path=/a%20b/bus;unix:path=/c/bus"), u"/a b/"_s);
    EXPECT_EQ(busSocketFolder("unix:abstract=/run/user/1/bus"), QString());
    EXPECT_EQ(busSocketFolder("tcp:host=localhost,port=1"), QString());
    EXPECT_EQ(busSocketFolder({}), QString());
}

TEST_F(SingleInstanceTest, IsReachableOnARestartedBus) {
    NameClaim claim(address(), {}, {20s, 20s, 20s}, [] { ADD_FAILURE(); });
    const SingleInstance instance(claim, address().split(',').first(), queue_, carryOut_);
    bus_.stop();
    bus_.startAgain();
    const QDBusConnection client = bus_.connect();
    EXPECT_TRUE(waitUntil([&client] {
        return client.interface()->isServiceRegistered(QString::fromUtf8(applicationBusName));
    }));
    expectReachable();
}
