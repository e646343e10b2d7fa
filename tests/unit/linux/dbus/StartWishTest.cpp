#include "platform/linux/dbus/StartWish.h"

#include "support/FixedEnvironment.h"

#include <gtest/gtest.h>

using namespace amberquill;
using namespace amberquill::desktop;
using namespace Qt::StringLiterals;

TEST(StartWish, IsToBeShownWithWhatTheProgramWasStartedWith) {
    const StartWish wish =
        startWish(environmentOf({{"XDG_ACTIVATION_TOKEN", "token"}, {"DESKTOP_STARTUP_ID", "id_TIME5"}}));
    EXPECT_EQ(wish, (StartWish{{ApplicationRequest::Kind::Show, u"token"_s, u"id_TIME5"_s}, false}));
}

TEST(StartWish, ComesAlongWithNothingMostTimes) {
    EXPECT_EQ(startWish(environmentOf({})), StartWish());
}

TEST(StartWish, TellsAStartByTheBus) {
    EXPECT_TRUE(startWish(environmentOf({{"DBUS_STARTER_BUS_TYPE", "session"}})).byTheBus);
}

TEST(StartWish, IsWhatTheLastArgumentThatNamesAnActionSays) {
    using Kind = ApplicationRequest::Kind;
    const auto kind = [](const QList<QByteArray>& arguments) {
        return startWish(environmentOf({}), arguments).request.kind;
    };
    EXPECT_EQ(kind({"--toggle"}), Kind::Toggle);
    EXPECT_EQ(kind({"--hide"}), Kind::Hide);
    EXPECT_EQ(kind({"--hide", "--show"}), Kind::Show);
    EXPECT_EQ(kind({"--toggle", "-platform", "xcb", "--other", ""}), Kind::Toggle);
    EXPECT_EQ(kind({"toggle", "-hide", "--", "--Toggle", "--hidden"}), Kind::Show);
}
