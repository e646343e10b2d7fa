#include "platform/linux/settings/DesktopSettings.h"

#include "support/TemporaryTree.h"

#include <gtest/gtest.h>
#include <sys/stat.h>

using namespace amberquill;
using namespace amberquill::desktop;

TEST(SettingsFile, AValueIsFoundByItsGroupAndKey) {
    constexpr auto text =
        "Key=outside\n[Other]\nKey=other\n[Group]\n# Key=comment\nLonger=no\nKey=yes\nKey=later\n";
    EXPECT_EQ(settingsValue(text, "Group", "Key"), "yes");
    EXPECT_EQ(settingsValue(text, "Other", "Key"), "other");
    EXPECT_EQ(settingsValue(text, "Group", "Long"), std::nullopt);
    EXPECT_EQ(settingsValue(text, "Missing", "Key"), std::nullopt);
    EXPECT_EQ(settingsValue("", "Group", "Key"), std::nullopt);
}

TEST(SettingsFile, SpacesAndCarriageReturnsAreIgnored) {
    EXPECT_EQ(settingsValue("  [Group] \r\n \tKey \t=  a b \r\n", "Group", "Key"), "a b");
    EXPECT_EQ(settingsValue("[Group]\nKey=", "Group", "Key"), "");
}

TEST(SettingsFile, AKeyMayHaveAMarker) {
    EXPECT_EQ(settingsValue("[Group]\nKey[$i]=fixed\n", "Group", "Key"), "fixed");
    EXPECT_EQ(settingsValue("[Group]\nKey[$i\nKey=next\n", "Group", "Key"), "next");
    EXPECT_EQ(settingsValue("[Group]\nKey[de]=translated\n", "Group", "Key"), std::nullopt);
}

TEST(SettingsFile, OnlyARegularFileOfBoundedSizeIsRead) {
    const TemporaryTree tree;
    EXPECT_EQ(settingsContent(tree.write("some", "text")), "text");
    EXPECT_EQ(settingsContent(tree.path("missing")), std::nullopt);
    EXPECT_EQ(settingsContent(tree.makeFolder("folder")), std::nullopt);
    EXPECT_EQ(settingsContent(tree.write("large", QByteArray(4 * 1024 * 1024 + 1, ' '))), std::nullopt);
    ASSERT_EQ(::mkfifo(tree.at("fifo").c_str(), 0600), 0);
    EXPECT_EQ(settingsContent(tree.path("fifo")), std::nullopt);
}
