#include "platform/linux/applications/icons/DecodingSuspects.h"

#include <gtest/gtest.h>

using namespace amberquill::desktop;
using Standing = DecodingSuspects::Standing;

namespace {

const FileState one{.path = "/icons/one.svg", .modified = 5, .size = 10};
const FileState two{.path = "/icons/two words\n%.svg", .modified = -7, .size = 20};
const FileState three{.path = "/icons/three.svg", .modified = 9, .size = 30};

} // namespace

TEST(DecodingSuspects, WhatWasDecodedAloneIsGuilty) {
    DecodingSuspects suspects;
    EXPECT_TRUE(suspects.isEmpty());
    suspects.addDeath({one});
    EXPECT_EQ(suspects.standing(one), Standing::Guilty);
    EXPECT_EQ(suspects.standing(two), Standing::Clear);
}

TEST(DecodingSuspects, OfSeveralEachIsASuspectUntilTheSecondTime) {
    DecodingSuspects suspects;
    suspects.addDeath({one, two});
    EXPECT_EQ(suspects.standing(one), Standing::Suspect);
    EXPECT_EQ(suspects.standing(two), Standing::Suspect);
    suspects.addDeath({one, three});
    EXPECT_EQ(suspects.standing(one), Standing::Guilty);
    EXPECT_EQ(suspects.standing(two), Standing::Suspect);
    EXPECT_EQ(suspects.standing(three), Standing::Suspect);
}

TEST(DecodingSuspects, AFileThatChangedIsClear) {
    DecodingSuspects suspects;
    suspects.addDeath({one});
    auto changed = one;
    changed.modified = 6;
    EXPECT_EQ(suspects.standing(changed), Standing::Clear);
    changed = one;
    changed.size = 11;
    EXPECT_EQ(suspects.standing(changed), Standing::Clear);
    suspects.addDeath({changed, two}); // it begins anew
    EXPECT_EQ(suspects.standing(changed), Standing::Suspect);
}

TEST(DecodingSuspects, WhoeverDecodesIsCleared) {
    DecodingSuspects suspects;
    suspects.addDeath({one, two});
    EXPECT_TRUE(suspects.clear(one.path));
    EXPECT_FALSE(suspects.clear(one.path));
    EXPECT_EQ(suspects.standing(one), Standing::Clear);
    EXPECT_EQ(suspects.standing(two), Standing::Suspect);
}

TEST(DecodingSuspects, TheListComesBackAsItWasWritten) {
    DecodingSuspects suspects;
    suspects.addDeath({one, two});
    suspects.addDeath({three});
    const auto again = DecodingSuspects::read(suspects.written());
    EXPECT_EQ(again.standing(one), Standing::Suspect);
    EXPECT_EQ(again.standing(two), Standing::Suspect);
    EXPECT_EQ(again.standing(three), Standing::Guilty);
    EXPECT_EQ(again.written(), suspects.written());
}

TEST(DecodingSuspects, LinesThatMakeNoSenseAreLeftOut) {
    const auto read =
        DecodingSuspects::read("guilty 5 10 /icons/one.svg\n\nguilty\nguilty x 10 /a\nguilty 5 x /a\n"
                               "guilty 5 10 relative\nother 5 10 /a\nguilty 5 10 /a b\n\xFF\n");
    EXPECT_EQ(read.standing(one), Standing::Guilty);
    EXPECT_EQ(read.written(), "guilty 5 10 /icons/one.svg\n");
}

TEST(DecodingSuspects, TheListIsBounded) {
    DecodingSuspects suspects;
    for (int i = 0; i < 1'000; ++i) {
        suspects.addDeath({{.path = "/icons/" + std::to_string(i), .modified = 1, .size = 1}});
    }
    EXPECT_EQ(suspects.written().count('\n'), 256);
}
