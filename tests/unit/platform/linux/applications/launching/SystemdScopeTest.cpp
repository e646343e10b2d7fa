#include "platform/linux/applications/launching/SystemdScope.h"

#include "MockManager.h"
#include "support/ManualQueue.h"
#include "support/PrivateBus.h"
#include "support/WaitUntil.h"

#include <QDBusPendingCallWatcher>
#include <gtest/gtest.h>

using namespace amberquill;
using namespace amberquill::desktop;
using namespace Qt::StringLiterals;

TEST(ScopeName, AnIdIsEscapedAsSystemdDoes) {
    EXPECT_EQ(systemdEscaped(u"org.example.Calc"), u"org.example.Calc"_s);
    EXPECT_EQ(systemdEscaped(u"gnome-calc"), u"gnome\\x2dcalc"_s);
    EXPECT_EQ(systemdEscaped(u".hidden.x"), u"\\x2ehidden.x"_s);
    EXPECT_EQ(systemdEscaped(u"a b/c@d"), u"a\\x20b-c\\x40d"_s);
    EXPECT_EQ(systemdEscaped(u"a:b_9\\"), u"a:b_9\\x5c"_s);
    EXPECT_EQ(systemdEscaped(u"é"), u"\\xc3\\xa9"_s);
}

TEST(ScopeName, ItHasTheLauncherTheApplicationAndARandomNumber) {
    EXPECT_EQ(scopeName(u"gnome-calc", 0xabcd), u"app-amberquill-gnome\\x2dcalc-000000000000abcd.scope"_s);
}

TEST(ScopeName, LongIdsAreCut) {
    const QString name = scopeName(QString(400, u'-'), 1);
    EXPECT_LE(name.size(), 255);
    EXPECT_GT(name.size(), 250);
    EXPECT_TRUE(name.endsWith(u"\\x2d-0000000000000001.scope"_s)) << "no half of an escape";
}

namespace {

class SystemdScopeTest : public testing::Test {
protected:
    void place(const QString& id = u"org.example.Calc"_s) {
        scope_.place(4242, id, u"The Calculator"_s, [this] { ++placed_; });
    }

    // Waits until the manager's answers so far have been handled.
    void awaitAnswers() {
        const QDBusMessage ping =
            QDBusMessage::createMethodCall(u"org.freedesktop.systemd1"_s, u"/org/freedesktop/systemd1"_s,
                                           u"org.freedesktop.DBus.Peer"_s, u"Ping"_s);
        QDBusPendingCallWatcher answer(connection_.asyncCall(ping));
        bool handled = false;
        QObject::connect(&answer, &QDBusPendingCallWatcher::finished, &answer, [&] { handled = true; });
        EXPECT_TRUE(waitUntil([&] { return handled; }));
    }

    PrivateBus bus_;
    QDBusConnection connection_ = bus_.connect();
    ManualQueue queue_;
    SystemdScope scope_{[this] { return connection_; }, queue_};
    int placed_ = 0;
};

} // namespace

TEST_F(SystemdScopeTest, TheScopeIsInTheSliceOfApplications) {
    MockManager manager(bus_.connect());
    place(u"gnome-calc"_s);
    ASSERT_TRUE(waitUntil([&] { return manager.requests().size() == 1; }));
    const MockManager::Request& request = manager.requests().front();
    EXPECT_TRUE(request.unit.startsWith(u"app-amberquill-gnome\\x2dcalc-"_s)) << request.unit.toStdString();
    EXPECT_TRUE(request.unit.endsWith(u".scope"_s));
    EXPECT_EQ(request.mode, u"fail"_s);
    EXPECT_EQ(request.auxiliaryUnits, 0);
    EXPECT_EQ(qdbus_cast<QList<uint>>(request.properties.value(u"PIDs"_s)), QList<uint>{4242});
    EXPECT_EQ(request.properties.value(u"Slice"_s), u"app.slice"_s);
    EXPECT_EQ(request.properties.value(u"CollectMode"_s), u"inactive-or-failed"_s);
    EXPECT_EQ(request.properties.value(u"Description"_s), u"The Calculator"_s);
}

TEST_F(SystemdScopeTest, TheProcessWaitsForTheScope) {
    MockManager manager(bus_.connect());
    place();
    ASSERT_TRUE(waitUntil([&] { return manager.requests().size() == 1; }));
    manager.finishJob(u"app-amberquill-other-1.scope"_s); // not ours
    awaitAnswers();
    queue_.advance(0.9);
    EXPECT_EQ(placed_, 0) << "the promise of a job is not the scope";
    manager.finishJob(manager.requests().front().unit);
    EXPECT_TRUE(waitUntil([&] { return placed_ > 0; }));
    queue_.advance(10);
    EXPECT_EQ(placed_, 1);
}

TEST_F(SystemdScopeTest, AFailedJobEndsTheWait) {
    MockManager manager(bus_.connect());
    place();
    ASSERT_TRUE(waitUntil([&] { return manager.requests().size() == 1; }));
    manager.finishJob(manager.requests().front().unit, u"failed"_s);
    EXPECT_TRUE(waitUntil([&] { return placed_ == 1; }));
}

TEST_F(SystemdScopeTest, ARefusalEndsTheWait) {
    MockManager manager(bus_.connect());
    manager.setAnswer(MockManager::Answer::Error);
    place();
    EXPECT_TRUE(waitUntil([&] { return placed_ == 1; }));
    queue_.advance(10);
    EXPECT_EQ(placed_, 1);
}

TEST_F(SystemdScopeTest, AHangingManagerIsWaitedForOneSecond) {
    MockManager manager(bus_.connect());
    manager.setAnswer(MockManager::Answer::None);
    place();
    ASSERT_TRUE(waitUntil([&] { return manager.requests().size() == 1; }));
    queue_.advance(0.99);
    EXPECT_EQ(placed_, 0);
    queue_.advance(0.01);
    EXPECT_EQ(placed_, 1);
    manager.finishJob(manager.requests().front().unit); // too late
    place();
    ASSERT_TRUE(waitUntil([&] { return manager.requests().size() == 2; }));
    EXPECT_EQ(placed_, 1);
}

TEST_F(SystemdScopeTest, WithoutAManagerThereIsNoWait) {
    place();
    EXPECT_TRUE(waitUntil([&] { return placed_ == 1; }));
    EXPECT_NEAR(queue_.now(), 1000, 1e-9) << "and no time has passed";
}

TEST_F(SystemdScopeTest, AManagerThatIsNotRunningIsNotStarted) {
    bus_.makeActivatable("org.freedesktop.systemd1", "/bin/sleep 1000");
    place();
    EXPECT_TRUE(waitUntil([&] { return placed_ == 1; }));
}

TEST_F(SystemdScopeTest, WithoutABusThereIsNoWait) {
    SystemdScope scope(noBus, queue_);
    scope.place(4242, u"x"_s, u"X"_s, [this] { ++placed_; });
    EXPECT_EQ(placed_, 1);
}

TEST_F(SystemdScopeTest, TheManagerOfANewBusIsUsed) {
    place();
    EXPECT_TRUE(waitUntil([&] { return placed_ == 1; }));
    bus_.stop();
    bus_.startAgain();
    connection_ = bus_.connect();
    MockManager manager(bus_.connect());
    place();
    ASSERT_TRUE(waitUntil([&] { return manager.requests().size() == 1; }));
    EXPECT_EQ(placed_, 1);
    manager.finishJob(manager.requests().front().unit);
    EXPECT_TRUE(waitUntil([&] { return placed_ == 2; }));
}

TEST_F(SystemdScopeTest, TwoStartsOfAnApplicationHaveTwoScopes) {
    MockManager manager(bus_.connect());
    place();
    place();
    ASSERT_TRUE(waitUntil([&] { return manager.requests().size() == 2; }));
    EXPECT_NE(manager.requests()[0].unit, manager.requests()[1].unit);
    manager.finishJob(manager.requests()[1].unit);
    EXPECT_TRUE(waitUntil([&] { return placed_ == 1; }));
    manager.finishJob(manager.requests()[0].unit);
    EXPECT_TRUE(waitUntil([&] { return placed_ == 2; }));
}
