#include "platform/linux/session/ApplicationRequest.h"

#include "support/FixedEnvironment.h"

#include <gtest/gtest.h>

using namespace amberquill;
using namespace amberquill::desktop;
using namespace Qt::StringLiterals;

TEST(StartupRequest, IsShowWithTheTokenOfTheEnvironment) {
    const StartupRequest startup = startupRequest(
        environmentOf({{"XDG_ACTIVATION_TOKEN", "token"}, {"DESKTOP_STARTUP_ID", "id_TIME5"}}));
    EXPECT_EQ(startup, (StartupRequest{{ApplicationRequest::Kind::Show, u"token"_s, u"id_TIME5"_s}, false}));
}

TEST(StartupRequest, HasNoTokenWithoutTheVariables) {
    EXPECT_EQ(startupRequest(environmentOf({})), StartupRequest());
}

TEST(StartupRequest, RecognisesAStartByTheBus) {
    EXPECT_TRUE(startupRequest(environmentOf({{"DBUS_STARTER_BUS_TYPE", "session"}})).byTheBus);
}

TEST(StartupRequest, IsTheLastActionOfTheArguments) {
    using Kind = ApplicationRequest::Kind;
    const auto kind = [](const QList<QByteArray>& arguments) {
        return startupRequest(environmentOf({}), arguments).request.kind;
    };
    EXPECT_EQ(kind({"--toggle"}), Kind::Toggle);
    EXPECT_EQ(kind({"--hide"}), Kind::Hide);
    EXPECT_EQ(kind({"--hide", "--show"}), Kind::Show);
    EXPECT_EQ(kind({"--toggle", "-platform", "xcb", "--other", ""}), Kind::Toggle);
    EXPECT_EQ(kind({"toggle", "-hide", "--", "--Toggle", "--hidden"}), Kind::Show);
}
