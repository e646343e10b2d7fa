#include "platform/linux/applications/icons/lookup/IconThemeIndex.h"

#include "support/IconFiles.h"

#include <gtest/gtest.h>

using namespace amberquill;
using namespace amberquill::desktop;

namespace {

std::optional<IconThemeIndex> parsed(const QByteArray& text) {
    return parseIconThemeIndex({text.constData(), static_cast<std::size_t>(text.size())});
}

std::vector<std::string> pathsOf(const IconThemeIndex& index) {
    std::vector<std::string> paths;
    for (const auto& directory : index.directories) {
        paths.push_back(directory.path);
    }
    return paths;
}

using Paths = std::vector<std::string>;
using Type = IconDirectory::Type;

} // namespace

TEST(IconThemeIndex, DirectoriesHaveTheThemesOrderAndValues) {
    const auto index = parsed("[Icon Theme]\nName=T\nDirectories=scalable/apps,48x48@2/apps\n"
                              "[48x48@2/apps]\nSize=48\nScale=2\nType=Fixed\nContext=Applications\n"
                              "[scalable/apps]\nSize=128\nMinSize=8\nMaxSize=512\nType=Scalable\n");
    ASSERT_TRUE(index);
    ASSERT_EQ(index->directories.size(), 2U);
    EXPECT_EQ(index->directories[0], (IconDirectory{.path = "scalable/apps",
                                                    .type = Type::Scalable,
                                                    .size = 128,
                                                    .scale = 1,
                                                    .minimumSize = 8,
                                                    .maximumSize = 512,
                                                    .threshold = 2,
                                                    .context = ""}));
    EXPECT_EQ(index->directories[1], (IconDirectory{.path = "48x48@2/apps",
                                                    .type = Type::Fixed,
                                                    .size = 48,
                                                    .scale = 2,
                                                    .minimumSize = 48,
                                                    .maximumSize = 48,
                                                    .threshold = 2,
                                                    .context = "Applications"}));
}

TEST(IconThemeIndex, MissingKeysHaveTheStandardsDefaults) {
    const auto index = parsed(themeIndex({{"32/apps", "Size=32"}}));
    ASSERT_TRUE(index);
    ASSERT_EQ(index->directories.size(), 1U);
    EXPECT_EQ(index->directories[0], (IconDirectory{.path = "32/apps",
                                                    .type = Type::Threshold,
                                                    .size = 32,
                                                    .scale = 1,
                                                    .minimumSize = 32,
                                                    .maximumSize = 32,
                                                    .threshold = 2,
                                                    .context = ""}));
}

TEST(IconThemeIndex, ScaledDirectoriesFollowTheOthers) {
    const auto index = parsed("[Icon Theme]\nScaledDirectories=b\nDirectories=a\n[b]\nSize=1\n[a]\nSize=1\n");
    ASSERT_TRUE(index);
    EXPECT_EQ(pathsOf(*index), (Paths{"a", "b"}));
}

TEST(IconThemeIndex, InheritedThemesAreNamesInOrder) {
    const auto index = parsed(themeIndex({}, "one, two ,,../three,/four,.five,six"));
    ASSERT_TRUE(index);
    EXPECT_EQ(index->inherits, (Paths{"one", "two", "six"}));
}

TEST(IconThemeIndex, ADirectoryMustBeListedAndDescribed) {
    const auto index = parsed("[Icon Theme]\nDirectories=a,b\n[a]\nSize=1\n[c]\nSize=1\n");
    ASSERT_TRUE(index);
    EXPECT_EQ(pathsOf(*index), Paths{"a"});
}

TEST(IconThemeIndex, ADirectoryWithAnInvalidSizeIsLeftOut) {
    for (const auto* const size : {"", "0", "-5", "many", "48px", "5000", "99999999999999999999"}) {
        const auto index = parsed(themeIndex({{"a", QByteArray("Size=") + size}, {"b", "Size=16"}}));
        ASSERT_TRUE(index);
        EXPECT_EQ(pathsOf(*index), Paths{"b"}) << size;
    }
    const auto index = parsed(themeIndex({{"a", "Size=16\nScale=0"}, {"b", "Size=16\nScale=17"}}));
    ASSERT_TRUE(index);
    EXPECT_TRUE(index->directories.empty());
}

TEST(IconThemeIndex, APathThatLeadsOutOfTheThemeIsLeftOut) {
    const auto index = parsed(themeIndex({{"../a", "Size=1"},
                                          {"/etc", "Size=1"},
                                          {"a/../b", "Size=1"},
                                          {"a//b", "Size=1"},
                                          {".", "Size=1"},
                                          {QByteArray(300, 'a'), "Size=1"},
                                          {"good/apps", "Size=1"}}));
    ASSERT_TRUE(index);
    EXPECT_EQ(pathsOf(*index), Paths{"good/apps"});
}

TEST(IconThemeIndex, AnIndexNeedsTheIconThemeGroup) {
    EXPECT_FALSE(parsed(""));
    EXPECT_FALSE(parsed("[Desktop Entry]\nName=x\n"));
    EXPECT_FALSE(parsed("Directories=a\n[a]\nSize=1\n"));
    EXPECT_FALSE(parsed(QByteArray(64, '\0')));
}

TEST(IconThemeIndex, ByteOrderMarksSpacesAndCommentsAreIgnored) {
    const auto index = parsed("\xEF\xBB\xBF# a comment\r\n\r\n[Icon Theme]\r\n  Directories = a , b \r\n"
                              "[a]\r\n\tSize\t=\t16\t\r\n# Size=17\r\n[b]\r\nSize=32\r\n");
    ASSERT_TRUE(index);
    EXPECT_EQ(pathsOf(*index), (Paths{"a", "b"}));
    EXPECT_EQ(index->directories[0].size, 16);
}

TEST(IconThemeIndex, TheFirstGroupOfANameCounts) {
    const auto index = parsed("[Icon Theme]\nDirectories=a,a\n[a]\nSize=16\n[a]\nSize=32\n");
    ASSERT_TRUE(index);
    ASSERT_EQ(index->directories.size(), 1U);
    EXPECT_EQ(index->directories[0].size, 16);
}

TEST(IconThemeIndex, BoundsApply) {
    std::vector<std::pair<QByteArray, QByteArray>> directories;
    for (int i = 0; i < 6000; ++i) {
        directories.emplace_back("d" + QByteArray::number(i), "Size=16");
    }
    const auto index = parsed(themeIndex(directories));
    ASSERT_TRUE(index);
    EXPECT_EQ(index->directories.size(), 4096U);
    EXPECT_FALSE(parsed("[Icon Theme]\n" + QByteArray(1024 * 1024, '#')));
}

TEST(IconThemeIndex, ATruncatedIndexIsReadUpToItsEnd) {
    const auto whole = themeIndex({{"a/b", "Size=16\nScale=2\nType=Fixed"}, {"c", "Size=32"}}, "x,y");
    for (qsizetype size = 0; size <= whole.size(); ++size) {
        const auto index = parsed(whole.first(size));
        EXPECT_LE(index ? index->directories.size() : 0, 2U);
    }
    EXPECT_EQ(parsed(whole)->directories.size(), 2U);
}
