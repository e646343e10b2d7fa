#include "platform/linux/activation/Activation.h"

#include <QtGlobal>
#include <gtest/gtest.h>

using namespace amberquill::desktop;
using namespace Qt::StringLiterals;

TEST(StartToken, EachWindowSystemPrefersItsOwnKindOfToken) {
    const InheritedEnvironment both({"XDG_ACTIVATION_TOKEN=token", "DESKTOP_STARTUP_ID=id_TIME1"});
    EXPECT_EQ(takeStartToken(both, u"wayland"), u"token"_s);
    EXPECT_EQ(takeStartToken(both, u"wayland-egl"), u"token"_s);
    EXPECT_EQ(takeStartToken(both, u"xcb"), u"id_TIME1"_s);
    EXPECT_EQ(takeStartToken(both, {}), u"token"_s);
}

TEST(StartToken, WithoutItsOwnKindTheOtherKindIsUsed) {
    EXPECT_EQ(takeStartToken(InheritedEnvironment({"DESKTOP_STARTUP_ID=id_TIME1"}), u"wayland"),
              u"id_TIME1"_s);
    EXPECT_EQ(takeStartToken(InheritedEnvironment({"XDG_ACTIVATION_TOKEN=t", "DESKTOP_STARTUP_ID="}), u"xcb"),
              u"t"_s);
    EXPECT_EQ(takeStartToken(InheritedEnvironment({}), u"xcb"), QString());
}

TEST(StartToken, TheTokenIsRemovedFromTheEnvironment) {
    qputenv("XDG_ACTIVATION_TOKEN", "token");
    qputenv("DESKTOP_STARTUP_ID", "id");
    EXPECT_EQ(takeStartToken(InheritedEnvironment::capture(), u"wayland"), u"token"_s);
    EXPECT_FALSE(qEnvironmentVariableIsSet("XDG_ACTIVATION_TOKEN"));
    EXPECT_FALSE(qEnvironmentVariableIsSet("DESKTOP_STARTUP_ID"));
}
