#include "platform/linux/settings/PortalSettings.h"

#include "MockPortal.h"
#include "support/PrivateBus.h"
#include "support/WaitUntil.h"

#include <gtest/gtest.h>
#include <vector>

using namespace amberquill;
using namespace amberquill::desktop;
using namespace Qt::StringLiterals;

namespace {

const PortalKey first{u"org.example"_s, u"first"_s};
const PortalKey second{u"org.example"_s, u"second"_s};
const PortalKey other{u"org.example"_s, u"other"_s};

class PortalSettingsTest : public testing::Test {
protected:
    std::unique_ptr<PortalSettings> follow(QDBusConnection bus, int patience = 3000) {
        return std::make_unique<PortalSettings>(
            std::move(bus), QList{first, second},
            [this](const PortalKey& key, const std::optional<QVariant>& value) {
                told_.push_back({key.name, value});
            },
            patience);
    }

    struct Told {
        QString name;
        std::optional<QVariant> value;

        bool operator==(const Told&) const = default;
    };

    bool isTold(std::size_t count) {
        return waitUntil([this, count] { return told_.size() >= count; });
    }

    PrivateBus bus_;
    MockPortal portal_{bus_.connect()};
    std::vector<Told> told_;
};

} // namespace

TEST_F(PortalSettingsTest, EachSettingIsReportedAndThenItsChanges) {
    portal_.set(first, true);
    portal_.set(second, 7U);
    portal_.appear();
    const auto settings = follow(bus_.connect());
    EXPECT_TRUE(told_.empty()) << "nothing waits for the answer";
    ASSERT_TRUE(isTold(2));
    EXPECT_EQ(told_, std::vector<Told>({{u"first"_s, true}, {u"second"_s, 7U}}));
    told_.clear();
    portal_.change(other, 1);
    portal_.change(second, 8U);
    ASSERT_TRUE(isTold(1));
    EXPECT_EQ(told_, std::vector<Told>({{u"second"_s, 8U}}));
}

TEST_F(PortalSettingsTest, ASettingUnknownToThePortalIsEmpty) {
    portal_.set(first, true);
    portal_.appear();
    const auto settings = follow(bus_.connect());
    ASSERT_TRUE(isTold(2));
    EXPECT_EQ(told_, std::vector<Told>({{u"first"_s, true}, {u"second"_s, std::nullopt}}));
}

TEST_F(PortalSettingsTest, APortalIsNotStartedButAskedOnceItRuns) {
    bus_.makeActivatable("org.freedesktop.portal.Desktop", "/bin/false");
    const auto settings = follow(bus_.connect());
    ASSERT_TRUE(isTold(2));
    EXPECT_EQ(told_, std::vector<Told>({{u"first"_s, std::nullopt}, {u"second"_s, std::nullopt}}));
    told_.clear();
    portal_.set(first, true);
    portal_.appear();
    ASSERT_TRUE(isTold(2));
    EXPECT_EQ(told_, std::vector<Told>({{u"first"_s, true}, {u"second"_s, std::nullopt}}));
}

TEST_F(PortalSettingsTest, APortalThatRestartsIsAskedAgain) {
    portal_.set(first, true);
    portal_.appear();
    const auto settings = follow(bus_.connect());
    ASSERT_TRUE(isTold(2));
    told_.clear();
    portal_.disappear();
    portal_.set(first, false);
    portal_.appear();
    ASSERT_TRUE(isTold(2));
    EXPECT_EQ(told_.front(), (Told{u"first"_s, false}));
    portal_.change(first, true);
    ASSERT_TRUE(isTold(3));
    EXPECT_EQ(told_.back(), (Told{u"first"_s, true}));
}

TEST_F(PortalSettingsTest, AHangingPortalDoesNotBlockAndItsLateAnswerCounts) {
    portal_.hang();
    portal_.appear();
    const auto settings = follow(bus_.connect(), 50);
    ASSERT_TRUE(waitUntil([this] { return portal_.questions() == 2; }));
    ASSERT_TRUE(isTold(2));
    EXPECT_EQ(told_, std::vector<Told>({{u"first"_s, std::nullopt}, {u"second"_s, std::nullopt}}));
    portal_.change(first, true);
    ASSERT_TRUE(isTold(3));
    EXPECT_EQ(told_.back(), (Told{u"first"_s, true}));
}

TEST_F(PortalSettingsTest, SignalsOfOtherProgramsAreIgnored) {
    portal_.set(first, true);
    portal_.appear();
    const auto settings = follow(bus_.connect());
    ASSERT_TRUE(isTold(2));
    MockPortal impostor(bus_.connect());
    impostor.change(first, false);
    portal_.change(second, 1U); // arrives after the other program's signal
    ASSERT_TRUE(isTold(3));
    EXPECT_EQ(told_.back(), (Told{u"second"_s, 1U}));
}

TEST_F(PortalSettingsTest, WithoutABusNothingIsReported) {
    const auto settings = follow(noBus());
    EXPECT_TRUE(told_.empty());
}

TEST_F(PortalSettingsTest, AnEarlierAnswerDoesNotOverrideAChange) {
    portal_.set(first, 0U);
    portal_.set(second, 0U);
    portal_.hang();
    portal_.appear();
    const auto settings = follow(bus_.connect());
    ASSERT_TRUE(waitUntil([this] { return portal_.questions() == 2; }));
    portal_.change(first, 1U);
    ASSERT_TRUE(isTold(1));
    portal_.answerLate();
    ASSERT_TRUE(isTold(2));
    EXPECT_EQ(told_, std::vector<Told>({{u"first"_s, 1U}, {u"second"_s, 0U}}));
}
