#include "model/RememberedPlace.h"

#include <gtest/gtest.h>

using namespace amberquill;

namespace {

// Something that stands somewhere, and how often it is searched for.
class RememberedPlaceTest : public testing::Test {
protected:
    std::optional<std::size_t> look(unsigned version) {
        return place_.in(
            version, [this](std::size_t place) { return place == standsAt_; },
            [this] {
                ++searches_;
                return standsAt_;
            });
    }

    RememberedPlace place_;
    std::optional<std::size_t> standsAt_ = 7;
    int searches_ = 0;
};

} // namespace

TEST_F(RememberedPlaceTest, IsSearchedForOnce) {
    EXPECT_EQ(look(1), 7U);
    EXPECT_EQ(look(1), 7U);
    EXPECT_EQ(searches_, 1);
}

TEST_F(RememberedPlaceTest, StandingWhereItStoodItIsNotSearchedForAfterAChange) {
    look(1);
    EXPECT_EQ(look(2), 7U);
    EXPECT_EQ(searches_, 1);
}

TEST_F(RememberedPlaceTest, StandingElsewhereItIsSearchedForAfterAChange) {
    look(1);
    standsAt_ = 3;
    EXPECT_EQ(look(2), 3U);
    EXPECT_EQ(searches_, 2);
}

TEST_F(RememberedPlaceTest, ThatThereIsNoneIsRememberedToo) {
    standsAt_.reset();
    EXPECT_EQ(look(0), std::nullopt);
    EXPECT_EQ(look(0), std::nullopt);
    EXPECT_EQ(searches_, 1);
    look(1);
    EXPECT_EQ(searches_, 2);
}

TEST_F(RememberedPlaceTest, WhereItIsExpectedIsLookedAtFirst) {
    look(0);
    standsAt_ = 9;
    place_.expectAt(9);
    EXPECT_EQ(look(0), 9U);
    EXPECT_EQ(searches_, 1);
    place_.expectAt(8);
    EXPECT_EQ(look(0), 9U) << "an expectation may be wrong";
    EXPECT_EQ(searches_, 2);
}

TEST_F(RememberedPlaceTest, ForgottenItIsSearchedForAgain) {
    look(0);
    place_.forget();
    EXPECT_EQ(look(0), 7U);
    EXPECT_EQ(searches_, 2);
}
