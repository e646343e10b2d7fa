#include "platform/linux/installation/ProgramVersion.h"

#include <gtest/gtest.h>

using amberquill::desktop::versionInLine;

TEST(ProgramVersion, FollowsTheProgramsName) {
    EXPECT_EQ(versionInLine("Amberquill 1.2.3\n"), QStringLiteral("1.2.3"));
    EXPECT_EQ(versionInLine("Amberquill 1.2b4"), QStringLiteral("1.2b4"));
}

TEST(ProgramVersion, IsMissingInAnyOtherText) {
    for (const char* const line : {"", "\n", "Amberquill", "Amberquill \n", "amberquill 1.2.3\n", "1.2.3\n",
                                   "Warning\nAmberquill 1.2.3\n", "Amberquill 1.2.3\nand more\n"}) {
        EXPECT_EQ(versionInLine(line), std::nullopt) << line;
    }
}
