#include "platform/linux/applications/launching/BusActivation.h"

#include "MockApplication.h"
#include "support/PrivateBus.h"
#include "support/WaitUntil.h"

#include <gtest/gtest.h>

using namespace amberquill;
using namespace amberquill::desktop;
using namespace Qt::StringLiterals;

TEST(BusAddress, DotsBecomeSlashesAndDashesUnderscores) {
    EXPECT_EQ(busAddress(u"org.example.my-calc.Calc2"_s),
              (BusAddress{u"org.example.my-calc.Calc2"_s, u"/org/example/my_calc/Calc2"_s}));
}

TEST(BusAddress, AnIdThatIsNotABusNameHasNone) {
    for (const QString& id :
         {u""_s, u"calc"_s, u"org..calc"_s, u".org.calc"_s, u"org.calc."_s, u"org.2calc"_s, u"org.c alc"_s,
          u"org.cälc"_s, u"org/calc.x"_s, u":1.7"_s, u"org."_s + QString(252, u'x')}) {
        EXPECT_EQ(busAddress(id), std::nullopt) << id.toStdString();
    }
    EXPECT_TRUE(busAddress(u"org."_s + QString(251, u'x')));
}

namespace {

const BusAddress calc{u"org.example.Calc"_s, u"/org/example/Calc"_s};

class BusActivationTest : public testing::Test {
protected:
    void activate(const QString& token = {}) {
        activation_.activate(calc, token, [this](BusActivationResult result) { results_ += result; });
    }

    std::optional<BusActivationResult> result() {
        if (!waitUntil([this] { return !results_.isEmpty(); })) {
            return std::nullopt;
        }
        EXPECT_EQ(results_.size(), 1);
        return results_.front();
    }

    PrivateBus bus_;
    QDBusConnection connection_ = bus_.connect();
    BusActivation activation_{[this] { return connection_; }};
    QList<BusActivationResult> results_;
};

} // namespace

TEST_F(BusActivationTest, TheApplicationIsActivatedAtItsNameAndPath) {
    MockApplication application(bus_.connect(), calc.name, calc.path);
    activate();
    EXPECT_EQ(result(), BusActivationResult::Started);
    EXPECT_EQ(application.activations(), QList<QVariantMap>{QVariantMap()});
}

TEST_F(BusActivationTest, ThePlatformDataHasTheTokenUnderBothNames) {
    MockApplication application(bus_.connect(), calc.name, calc.path);
    activate(u"a-token"_s);
    EXPECT_EQ(result(), BusActivationResult::Started);
    EXPECT_EQ(application.activations().front(),
              (QVariantMap{{u"desktop-startup-id"_s, u"a-token"_s}, {u"activation-token"_s, u"a-token"_s}}));
}

TEST_F(BusActivationTest, ActivationDoesNotBlock) {
    MockApplication application(bus_.connect(), calc.name, calc.path);
    application.failWith({}); // never answers
    activate();
    EXPECT_TRUE(results_.isEmpty());
    EXPECT_TRUE(waitUntil([&] { return application.activations().size() == 1; }));
    EXPECT_TRUE(results_.isEmpty());
}

TEST_F(BusActivationTest, AMissingServiceIsUnavailable) {
    activate();
    EXPECT_EQ(result(), BusActivationResult::Unavailable);
}

TEST_F(BusActivationTest, AServiceThatCannotBeStartedIsUnavailable) {
    bus_.makeActivatable("org.example.Calc", "/nowhere/at/all");
    activate();
    EXPECT_EQ(result(), BusActivationResult::Unavailable);
}

TEST_F(BusActivationTest, AServiceThatExitsBeforeItHasItsNameIsUnavailable) {
    bus_.makeActivatable("org.example.Calc", "/bin/false");
    activate();
    EXPECT_EQ(result(), BusActivationResult::Unavailable);
}

TEST_F(BusActivationTest, WithoutABusItIsUnavailable) {
    BusActivation activation(noBus);
    activation.activate(calc, {}, [this](BusActivationResult result) { results_ += result; });
    EXPECT_EQ(result(), BusActivationResult::Unavailable);
}

TEST_F(BusActivationTest, AnErrorOfTheApplicationIsAFailure) {
    MockApplication application(bus_.connect(), calc.name, calc.path);
    application.failWith(u"org.example.Error.NotToday"_s);
    activate();
    EXPECT_EQ(result(), BusActivationResult::Failed);
}

TEST_F(BusActivationTest, AServiceWithoutTheInterfaceIsAFailure) {
    QDBusConnection other = bus_.connect();
    ASSERT_TRUE(other.registerService(calc.name));
    activate();
    EXPECT_EQ(result(), BusActivationResult::Failed);
}

TEST_F(BusActivationTest, ATimeoutOfTheBusIsAFailure) {
    MockApplication application(bus_.connect(), calc.name, calc.path);
    application.failWith(u"org.freedesktop.DBus.Error.TimedOut"_s);
    activate();
    EXPECT_EQ(result(), BusActivationResult::Failed);
}

TEST_F(BusActivationTest, AnApplicationThatDoesNotAnswerCountsAsStarted) {
    MockApplication application(bus_.connect(), calc.name, calc.path);
    application.failWith(u"org.freedesktop.DBus.Error.NoReply"_s);
    activate();
    EXPECT_EQ(result(), BusActivationResult::Started);
}
