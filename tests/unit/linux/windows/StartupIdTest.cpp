#include "platform/linux/x11/StartupId.h"

#include <gtest/gtest.h>

namespace amberquill::desktop {
namespace {

using namespace Qt::StringLiterals;

TEST(StartupId, EndsInTheTimeOfWhatTheUserDid) {
    EXPECT_EQ(startupTime(u"panel/amberquill/1234-0-host_TIME98765"_s), 98765U);
    EXPECT_EQ(startupTime(u"_TIME4294967295"_s), 4294967295U);
}

TEST(StartupId, TheLastTimeInItCounts) {
    EXPECT_EQ(startupTime(u"a_TIME1_TIME2"_s), 2U);
}

TEST(StartupId, WithoutATimeThereIsNone) {
    EXPECT_EQ(startupTime({}), std::nullopt);
    EXPECT_EQ(startupTime(u"3f2c-wayland-token"_s), std::nullopt);
    EXPECT_EQ(startupTime(u"id_TIME"_s), std::nullopt);
}

TEST(StartupId, ATimeThatIsNotOneOfTheServersIsNone) {
    EXPECT_EQ(startupTime(u"id_TIME0"_s), std::nullopt);
    EXPECT_EQ(startupTime(u"id_TIME-5"_s), std::nullopt);
    EXPECT_EQ(startupTime(u"id_TIME+5"_s), std::nullopt);
    EXPECT_EQ(startupTime(u"id_TIME 5"_s), std::nullopt);
    EXPECT_EQ(startupTime(u"id_TIME5x"_s), std::nullopt);
    EXPECT_EQ(startupTime(u"id_TIME4294967296"_s), std::nullopt);
    EXPECT_EQ(startupTime(u"id_TIME"_s + QString(100000, u'9')), std::nullopt);
}

} // namespace
} // namespace amberquill::desktop
