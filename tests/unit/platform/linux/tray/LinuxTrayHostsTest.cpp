#include "platform/linux/tray/LinuxTrayHosts.h"

#include "MockWatcher.h"
#include "support/PrivateBus.h"
#include "support/WaitUntil.h"
#include "support/Watchdog.h"

#include <QCoreApplication>
#include <QDBusPendingCallWatcher>
#include <gtest/gtest.h>

using namespace amberquill;
using namespace amberquill::desktop;
using namespace Qt::StringLiterals;

namespace {

class LinuxTrayHostsTest : public testing::Test {
protected:
    void follow() {
        hosts_.follow([this] { ++trays_; }, [this] { ++gone_; });
    }

    [[nodiscard]] bool isTold(int trays) {
        return waitUntil([&] { return trays_ == trays; });
    }

    // Waits until both sides have handled each other's messages and the answers to them.
    void settle() {
        for (int i = 0; i < 3; ++i) {
            askTheBus(watcherBus_);
            askTheBus(hostsBus_);
        }
    }

    static void askTheBus(QDBusConnection& connection) {
        const QDBusPendingCallWatcher watcher(connection.asyncCall(QDBusMessage::createMethodCall(
            u"org.freedesktop.DBus"_s, u"/org/freedesktop/DBus"_s, u"org.freedesktop.DBus"_s, u"GetId"_s)));
        EXPECT_TRUE(waitUntil([&] { return watcher.isFinished(); }));
    }

    PrivateBus bus_;
    QDBusConnection watcherBus_ = bus_.connect();
    QDBusConnection hostsBus_ = bus_.connect();
    MockWatcher watcher_{watcherBus_};
    LinuxTrayHosts hosts_{[this] { return hostsBus_; }};
    int trays_ = 0;
    int gone_ = 0;
};

} // namespace

TEST_F(LinuxTrayHostsTest, AnExistingHostIsReported) {
    watcher_.setHost(true);
    watcher_.appear();
    follow();
    EXPECT_TRUE(isTold(1));
}

TEST_F(LinuxTrayHostsTest, EachLaterHostIsReported) {
    follow();
    settle();
    EXPECT_EQ(trays_, 0);
    watcher_.setHost(true);
    for (int times = 1; times <= 2; ++times) {
        watcher_.appear();
        EXPECT_TRUE(isTold(times));
        watcher_.disappear();
        settle();
        EXPECT_EQ(trays_, times);
    }
}

TEST_F(LinuxTrayHostsTest, AWatcherWithoutAHostIsNotATray) {
    watcher_.appear();
    follow();
    EXPECT_TRUE(waitUntil([this] { return watcher_.questions() > 0; }));
    settle();
    EXPECT_EQ(trays_, 0);
    watcher_.addHost();
    EXPECT_TRUE(isTold(1));
}

TEST_F(LinuxTrayHostsTest, ANewFollowerReplacesTheEarlierOne) {
    follow();
    int told = 0;
    hosts_.follow([&told] { ++told; }, [] {});
    watcher_.setHost(true);
    watcher_.appear();
    EXPECT_TRUE(waitUntil([&] { return told == 1; }));
    EXPECT_EQ(trays_, 0);
}

TEST_F(LinuxTrayHostsTest, TheHostsOfARestartedBusAreReported) {
    watcher_.setHost(true);
    watcher_.appear();
    follow();
    EXPECT_TRUE(isTold(1));
    bus_.stop();
    bus_.startAgain();
    QDBusConnection newWatcherBus = bus_.connect();
    MockWatcher newWatcher(newWatcherBus);
    newWatcher.setHost(true);
    newWatcher.appear();
    hostsBus_ = bus_.connect();
    EXPECT_EQ(gone_, 0);
    hosts_.busCameBack();
    EXPECT_EQ(gone_, 1);
    EXPECT_TRUE(isTold(2));
    newWatcher.disappear();
    newWatcher.appear();
    EXPECT_TRUE(isTold(3));
}

TEST_F(LinuxTrayHostsTest, ARestartedBusIsNotAskedWithoutAFollower) {
    hosts_.busCameBack();
    settle();
    EXPECT_EQ(watcher_.questions(), 0);
}

TEST_F(LinuxTrayHostsTest, AHangingBusDoesNotBlockTheCaller) {
    watcher_.setHost(true);
    watcher_.appear();
    bus_.freeze();
    {
        const Watchdog watchdog("who follows waits for the bus", [this] { bus_.thaw(); });
        follow();
    }
    EXPECT_EQ(trays_, 0);
    bus_.thaw();
    EXPECT_TRUE(isTold(1));
}

TEST(LinuxTrayHosts, WithoutABusThereIsNoTray) {
    LinuxTrayHosts hosts([] { return QDBusConnection(u"none"_s); });
    int trays = 0;
    hosts.follow([&trays] { ++trays; }, [] {});
    QCoreApplication::processEvents();
    EXPECT_EQ(trays, 0);
}
