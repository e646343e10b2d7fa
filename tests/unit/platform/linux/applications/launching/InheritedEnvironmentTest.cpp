#include "platform/linux/applications/launching/InheritedState.h"

#include <QtGlobal>
#include <gmock/gmock.h>
#include <gtest/gtest.h>

using namespace amberquill::desktop;
using testing::ElementsAre;
using testing::UnorderedElementsAre;

TEST(InheritedEnvironment, AnApplicationGetsTheInheritedEnvironment) {
    const InheritedEnvironment start({"PATH=/bin", "QT_SCALE_FACTOR=2", "EMPTY=", "SIGNS=a=b"});
    EXPECT_THAT(start.forChild({}), ElementsAre("PATH=/bin", "QT_SCALE_FACTOR=2", "EMPTY=", "SIGNS=a=b"));
}

TEST(InheritedEnvironment, VariablesSetLaterDoNotReachAnApplication) {
    qputenv("AMBERQUILL_TEST_BEFORE", "the session's");
    qunsetenv("AMBERQUILL_TEST_AFTER");
    const InheritedEnvironment start = InheritedEnvironment::capture();
    qputenv("AMBERQUILL_TEST_BEFORE", "ours");
    qputenv("AMBERQUILL_TEST_AFTER", "ours");
    const InheritedEnvironment child(start.forChild({}));
    EXPECT_EQ(child.value("AMBERQUILL_TEST_BEFORE"), "the session's");
    EXPECT_EQ(child.value("AMBERQUILL_TEST_AFTER"), std::nullopt);
}

TEST(InheritedEnvironment, VariablesForTheLauncherAloneAreLeftOut) {
    const InheritedEnvironment start(
        {"XDG_ACTIVATION_TOKEN=ours", "DESKTOP_STARTUP_ID=ours", "DESKTOP_AUTOSTART_ID=1",
         "NOTIFY_SOCKET=/run/x", "WATCHDOG_PID=1", "WATCHDOG_USEC=1", "LISTEN_FDS=1", "LISTEN_PID=1",
         "LISTEN_FDNAMES=a", "INVOCATION_ID=f00", "GIO_LAUNCHED_DESKTOP_FILE=/us.desktop",
         "GIO_LAUNCHED_DESKTOP_FILE_PID=1", "DBUS_STARTER_ADDRESS=unix:path=/x",
         "DBUS_STARTER_BUS_TYPE=session", "DBUS_SESSION_BUS_ADDRESS=unix:path=/x", "JOURNAL_STREAM=8:1",
         "WAYLAND_DISPLAY=wayland-0"});
    EXPECT_THAT(start.forChild({}), ElementsAre("DBUS_SESSION_BUS_ADDRESS=unix:path=/x", "JOURNAL_STREAM=8:1",
                                                "WAYLAND_DISPLAY=wayland-0"));
}

TEST(InheritedEnvironment, TheTokenIsSetUnderBothNames) {
    const InheritedEnvironment start({"XDG_ACTIVATION_TOKEN=ours"});
    EXPECT_THAT(start.forChild({.token = "theirs", .entryPath = {}, .workingDirectory = {}}),
                UnorderedElementsAre("XDG_ACTIVATION_TOKEN=theirs", "DESKTOP_STARTUP_ID=theirs"));
}

TEST(InheritedEnvironment, TheEntryAndTheWorkingDirectoryAreNamed) {
    const InheritedEnvironment start({"PWD=/before", "PWD=/twice", "GIO_LAUNCHED_DESKTOP_FILE=/us.desktop"});
    EXPECT_THAT(start.forChild({.token = {}, .entryPath = "/calc.desktop", .workingDirectory = "/home/u"}),
                UnorderedElementsAre("GIO_LAUNCHED_DESKTOP_FILE=/calc.desktop", "PWD=/home/u"));
}

TEST(InheritedEnvironment, VariablesAreFoundByTheirWholeName) {
    const InheritedEnvironment start({"PATHS=/no", "PATH=/bin", "EMPTY="});
    EXPECT_EQ(start.value("PATH"), "/bin");
    EXPECT_EQ(start.value("EMPTY"), "");
    EXPECT_EQ(start.value("PAT"), std::nullopt);
    EXPECT_EQ(start.lookup()("PATH"), "/bin");
    EXPECT_EQ(start.lookup()("HOME"), std::nullopt);
}

TEST(InheritedEnvironment, EntriesWithoutANameAreLeftOut) {
    const InheritedEnvironment start({"nothing", "=x", "", "A=1"});
    EXPECT_THAT(start.forChild({}), ElementsAre("A=1"));
}
