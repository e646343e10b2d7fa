#include "updates/updater/Updater.h"

#include "UpdaterFixture.h"

#include <gtest/gtest.h>

using namespace amberquill;
using namespace Qt::StringLiterals;
using State = Updater::State;

namespace {

constexpr double hour = 60.0 * 60;
constexpr double day = 24 * hour;

class UpdaterScheduleTest : public UpdaterFixture {
protected:
    // Waits for the end of a check that finds nothing.
    void finishCheck() {
        ASSERT_EQ(updater().state(), State::Checking);
        ASSERT_TRUE(settleAt(State::Idle));
    }
};

} // namespace

TEST_F(UpdaterScheduleTest, TheFirstCheckComesWithinTheHour) {
    serveVersion("1.0");
    for (const double part : {0.0, 0.25, 0.75, 0.999}) {
        preferences.remove(u"SULastCheckTime"_s);
        random = part;
        restartUpdater();
        updater().start();
        EXPECT_EQ(updater().state(), State::Idle);
        pass(part * hour - 1);
        EXPECT_EQ(updater().state(), State::Idle) << part;
        pass(61);
        finishCheck();
        EXPECT_EQ(interface.take(), QStringList{u"cycle over, scheduled"_s});
    }
    EXPECT_EQ(feedRequests(), 4U);
}

TEST_F(UpdaterScheduleTest, ACheckFollowsTheLastAfterADayAndUpToAnHour) {
    serveVersion("1.0");
    updater().start();
    pass(hour);
    finishCheck();
    const auto first = updater().lastCheck();
    ASSERT_TRUE(first);
    pass(day - hour);
    EXPECT_EQ(updater().state(), State::Idle);
    EXPECT_EQ(updater().lastCheck(), first);
    pass(2 * hour);
    finishCheck();
    const auto second = updater().lastCheck();
    ASSERT_TRUE(second);
    const double between = std::chrono::duration<double>(*second - *first).count();
    EXPECT_GE(between, day + random * hour);
    EXPECT_LE(between, day + random * hour + 120);
    EXPECT_EQ(feedRequests(), 2U);
}

TEST_F(UpdaterScheduleTest, TheLastCheckIsRememberedAfterARestart) {
    serveVersion("1.0");
    updater().start();
    pass(hour);
    finishCheck();
    EXPECT_EQ(preferences.string(u"SULastCheckTime"_s), u"2026-11-21T00:30:00Z"_s);
    restartUpdater();
    updater().start();
    pass(day - hour);
    EXPECT_EQ(updater().state(), State::Idle);
    pass(2 * hour);
    finishCheck();
    EXPECT_EQ(feedRequests(), 2U);
}

TEST_F(UpdaterScheduleTest, ACheckByTheUserCountsAsTheLastCheck) {
    serveVersion("1.0");
    updater().start();
    updater().checkForUpdates();
    ASSERT_TRUE(settleAt(State::UpToDate));
    updater().acknowledge();
    pass(day);
    EXPECT_EQ(updater().state(), State::Idle);
    pass(hour);
    finishCheck();
}

TEST_F(UpdaterScheduleTest, AMachineThatWasSuspendedChecksWithinAnHour) {
    serveVersion("1.0");
    updater().start();
    pass(hour);
    finishCheck();
    queue.setDate(queue.date() + std::chrono::days(7));
    pass(Updater::maximumWait + 60);
    finishCheck();
    EXPECT_EQ(feedRequests(), 2U);
}

TEST_F(UpdaterScheduleTest, AWrongClockDoesNotPreventChecks) {
    serveVersion("1.0");
    preferences.setString(u"SULastCheckTime"_s, u"2099-01-01T00:00:00Z"_s);
    updater().start();
    pass(hour);
    finishCheck();
    queue.setDate(queue.date() - std::chrono::days(365));
    pass(3 * hour);
    finishCheck();
    EXPECT_EQ(feedRequests(), 2U);
}

TEST_F(UpdaterScheduleTest, AnInvalidDateOfTheLastCheckIsIgnored) {
    for (const QString& text : {u""_s, u"yesterday"_s, u"2026-13-45T00:00:00Z"_s, u"1763683200"_s}) {
        preferences.setString(u"SULastCheckTime"_s, text);
        EXPECT_EQ(updater().lastCheck(), std::nullopt);
    }
    preferences.setInteger(u"SULastCheckTime"_s, 5);
    EXPECT_EQ(updater().lastCheck(), std::nullopt);
}

TEST_F(UpdaterScheduleTest, NothingIsCheckedWhileSwitchedOff) {
    serveVersion("1.0");
    EXPECT_TRUE(updater().automaticallyChecksForUpdates());
    updater().start();
    updater().setAutomaticallyChecksForUpdates(false);
    EXPECT_FALSE(updater().automaticallyChecksForUpdates());
    EXPECT_EQ(preferences.boolean(u"SUEnableAutomaticChecks"_s), false);
    EXPECT_EQ(queue.timers(), 0U);
    pass(3 * day);
    EXPECT_EQ(updater().state(), State::Idle);
    restartUpdater();
    updater().start();
    EXPECT_FALSE(updater().automaticallyChecksForUpdates());
    EXPECT_EQ(queue.timers(), 0U);
    pass(3 * day);
    EXPECT_EQ(updater().state(), State::Idle);
    EXPECT_EQ(feedRequests(), 0U);
    updater().setAutomaticallyChecksForUpdates(true);
    EXPECT_TRUE(updater().automaticallyChecksForUpdates());
    pass(hour);
    finishCheck();
}

TEST_F(UpdaterScheduleTest, SwitchingOffEndsAScheduledCheck) {
    serveVersion("2.0");
    updater().start();
    pass(random * hour);
    ASSERT_EQ(updater().state(), State::Checking);
    updater().setAutomaticallyChecksForUpdates(false);
    EXPECT_EQ(updater().state(), State::Idle);
    EXPECT_EQ(queue.timers(), 0U);
    EXPECT_EQ(interface.take(), QStringList{u"cycle over, scheduled"_s});
}

TEST_F(UpdaterScheduleTest, SwitchingOffKeepsAShownUpdate) {
    serveVersion("2.0");
    updater().start();
    pass(random * hour);
    ASSERT_TRUE(settleAt(State::Found));
    updater().setAutomaticallyChecksForUpdates(false);
    EXPECT_EQ(updater().state(), State::Found);
    updater().later();
    EXPECT_EQ(queue.timers(), 0U);
}

TEST_F(UpdaterScheduleTest, NothingIsScheduledWithoutAFeed) {
    keys.feedAddress.reset();
    updater().start();
    EXPECT_EQ(queue.waiting(), 0U);
    EXPECT_TRUE(updater().automaticallyChecksForUpdates());
}

TEST_F(UpdaterScheduleTest, NothingIsScheduledBeforeTheStart) {
    updater().setAutomaticallyChecksForUpdates(true);
    EXPECT_EQ(queue.waiting(), 0U);
}

TEST_F(UpdaterScheduleTest, NothingIsCheckedWhileTheUserIsBusy) {
    serveVersion("1.0");
    isBusy = true;
    updater().start();
    pass(5 * hour);
    EXPECT_EQ(updater().state(), State::Idle);
    isBusy = false;
    pass(Updater::busyRetry);
    finishCheck();
}

TEST_F(UpdaterScheduleTest, NothingIsShownWhileTheUserIsBusy) {
    serveVersion("2.0");
    updater().start();
    pass(random * hour);
    ASSERT_EQ(updater().state(), State::Checking);
    isBusy = true;
    ASSERT_TRUE(settleAt(State::Found));
    pass(hour);
    EXPECT_EQ(interface.take(), QStringList());
    isBusy = false;
    pass(Updater::busyRetry);
    EXPECT_EQ(interface.take(),
              (QStringList{u"will show 2.0 itself, scheduled"_s, u"found 2.0 over 1.0 shown"_s}));
    updater().later();
    EXPECT_EQ(interface.take(), (QStringList{u"dismiss"_s, u"session over"_s, u"cycle over, scheduled"_s}));
}

TEST_F(UpdaterScheduleTest, ACheckByTheUserShowsAnUpdateThatWaits) {
    serveVersion("2.0");
    updater().start();
    pass(random * hour);
    isBusy = true;
    ASSERT_TRUE(settleAt(State::Found));
    updater().checkForUpdates();
    EXPECT_EQ(interface.take(),
              (QStringList{u"will show 2.0 itself, asked for"_s, u"found 2.0 over 1.0 shown"_s}));
    isBusy = false;
    pass(2 * Updater::busyRetry);
    EXPECT_EQ(interface.take(), QStringList());
    EXPECT_EQ(feedRequests(), 1U);
}

TEST_F(UpdaterScheduleTest, ACheckByTheUserReplacesAScheduledOne) {
    serveVersion("1.0");
    updater().start();
    pass(random * hour);
    ASSERT_EQ(updater().state(), State::Checking);
    updater().checkForUpdates();
    ASSERT_TRUE(settleAt(State::UpToDate));
    EXPECT_EQ(interface.take(),
              (QStringList{u"cycle over, scheduled"_s, u"checking"_s, u"none over 1.0 shown"_s}));
}

TEST_F(UpdaterScheduleTest, AFailedScheduledCheckIsNotShown) {
    server.serve("/feed", LoopbackServer::answer("500 Internal Server Error", "sorry"));
    updater().start();
    pass(hour);
    finishCheck();
    EXPECT_EQ(interface.take(), QStringList{u"cycle over, scheduled with error"_s});
    pass(2 * hour);
    EXPECT_EQ(updater().state(), State::Idle);
}

TEST_F(UpdaterScheduleTest, ASkippedVersionIsShownOnlyToAUserWhoAsks) {
    serveVersion("2.0");
    updater().start();
    pass(random * hour);
    ASSERT_TRUE(settleAt(State::Found));
    updater().skip();
    EXPECT_EQ(preferences.string(u"SUSkippedVersion"_s), u"2.0"_s);
    EXPECT_EQ(updater().state(), State::Idle);
    interface.take();
    pass(day + random * hour + 60);
    finishCheck();
    EXPECT_EQ(interface.take(), QStringList{u"cycle over, scheduled"_s});
    updater().checkForUpdates();
    ASSERT_TRUE(settleAt(State::Found));
    updater().later();
    serveVersion("2.1");
    pass(day + hour);
    ASSERT_TRUE(settleAt(State::Found));
    EXPECT_EQ(interface.lastOffer->item.version, u"2.1"_s);
}

TEST_F(UpdaterScheduleTest, AScheduledCheckDoesNotShowAnInstalledVersion) {
    serveVersion("2.0");
    updater().start();
    pass(random * hour);
    ASSERT_TRUE(settleAt(State::Found));
    updater().install();
    ASSERT_TRUE(settleAt(State::Installed));
    updater().later();
    interface.take();
    pass(day + hour);
    finishCheck();
    EXPECT_EQ(interface.take(), QStringList{u"cycle over, scheduled"_s});
}
