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
