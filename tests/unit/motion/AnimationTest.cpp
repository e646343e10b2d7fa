#include "motion/Animation.h"

#include "motion/Animations.h"

#include <gtest/gtest.h>

using namespace amberquill;

TEST(WithAnimation, OutsideThereIsNoAnimation) {
    EXPECT_EQ(currentAnimation(), std::nullopt);
}

TEST(WithAnimation, InsideItIsTheCurrentAnimation) {
    std::optional<Animation> inside;
    withAnimation(motion::page, [&inside] { inside = currentAnimation(); });
    EXPECT_EQ(inside, motion::page);
    EXPECT_EQ(currentAnimation(), std::nullopt);
}

TEST(WithAnimation, TheInnerAnimationCountsWhileItRuns) {
    withAnimation(motion::page, [] {
        withAnimation(motion::move, [] { EXPECT_EQ(currentAnimation(), motion::move); });
        EXPECT_EQ(currentAnimation(), motion::page);
    });
}

TEST(Animations, EachHasItsOwnTiming) {
    EXPECT_EQ(motion::show, spring(0.35, 0.9));
    EXPECT_EQ(motion::hide, easeIn(0.15));
    EXPECT_EQ(motion::windowFadeIn.seconds, 0.2);
    EXPECT_EQ(motion::windowFadeOut.seconds, 0.15);
    EXPECT_EQ(motion::page, spring(0.42, 0.86));
    EXPECT_EQ(motion::replaceLayout, spring(0.4, 0.85));
    EXPECT_EQ(motion::openFolder, spring(0.34, 0.86));
    EXPECT_EQ(motion::closeFolder, easeOut(0.2));
    EXPECT_EQ(motion::move, spring(0.32, 0.82));
    EXPECT_EQ(motion::merge, spring(0.35, 0.8));
    EXPECT_EQ(motion::pullOut, spring(0.35, 0.85));
    EXPECT_EQ(motion::mergeTarget, spring(0.25, 0.7));
    EXPECT_EQ(motion::dropGlide, easeOut(0.18));
}
