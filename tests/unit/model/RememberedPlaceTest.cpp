#include "model/RememberedPlace.h"

#include <gtest/gtest.h>

using namespace amberquill;

TEST(RememberedPlace, IsLookedForOncePerVersionOfTheLayout) {
    RememberedPlace place;
    int looks = 0;
    const auto find = [&looks]() -> std::optional<std::size_t> {
        ++looks;
        return 7;
    };
    EXPECT_EQ(place.in(1, find), 7U);
    EXPECT_EQ(place.in(1, find), 7U);
    EXPECT_EQ(looks, 1);
    EXPECT_EQ(place.in(2, find), 7U);
    EXPECT_EQ(looks, 2);
}

TEST(RememberedPlace, ThatThereIsNoneIsRememberedToo) {
    RememberedPlace place;
    int looks = 0;
    const auto find = [&looks]() -> std::optional<std::size_t> {
        ++looks;
        return std::nullopt;
    };
    EXPECT_EQ(place.in(0, find), std::nullopt);
    EXPECT_EQ(place.in(0, find), std::nullopt);
    EXPECT_EQ(looks, 1);
}

TEST(RememberedPlace, ForgottenItIsLookedForAgain) {
    RememberedPlace place;
    place.in(0, [] { return std::optional<std::size_t>(1); });
    place.forget();
    EXPECT_EQ(place.in(0, [] { return std::optional<std::size_t>(2); }), 2U);
}
