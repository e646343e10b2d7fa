#include "platform/linux/applications/icons/IconFolder.h"

#include "support/FaultySystemCalls.h"
#include "support/IconFiles.h"

#include <gtest/gtest.h>

using namespace amberquill;
using namespace amberquill::desktop;

namespace {

// Both ways of looking: a folder that is read, and one so large that single files are looked for.
class IconFolderTest : public testing::TestWithParam<std::int64_t> {
protected:
    IconFolder folder() const { return {files_.at("icons").string(), GetParam()}; }

    TemporaryTree files_;
};

} // namespace

INSTANTIATE_TEST_SUITE_P(BothWays, IconFolderTest, testing::Values(0, 1'000'000),
                         [](const auto& size) { return size.param == 0 ? "Read" : "LookedFor"; });

TEST_P(IconFolderTest, AnIconHasTheEndingsThatStandInTheFolder) {
    for (const auto* const name :
         {"a.png", "a.svg", "a.xpm", "b.svgz", "org.x.B.c.png", "d.PNG", "e.jpg", "f", ".png"}) {
        files_.write(std::filesystem::path("icons") / name, "x");
    }
    auto icons = folder();
    EXPECT_EQ(icons.endings("a"), (IconEndings{IconEnding::Png, IconEnding::Svg, IconEnding::Xpm}));
    EXPECT_EQ(icons.endings("a").first(), IconEnding::Png);
    EXPECT_EQ(icons.endings("b"), IconEndings{IconEnding::Svgz});
    EXPECT_EQ(icons.endings("org.x.B.c"), IconEndings{IconEnding::Png});
    for (const auto* const name : {"d", "e", "f", "A", "missing"}) {
        EXPECT_TRUE(icons.endings(name).isEmpty()) << name;
    }
}

TEST_P(IconFolderTest, FoldersAreNoIconsAndLinksAre) {
    files_.makeFolder("icons/a.png");
    files_.write("elsewhere.svg", "x");
    files_.link("icons/b.svg", files_.at("elsewhere.svg"));
    auto icons = folder();
    EXPECT_TRUE(icons.endings("a").isEmpty());
    EXPECT_EQ(icons.endings("b"), IconEndings{IconEnding::Svg});
}

TEST_P(IconFolderTest, WhereTheFileSystemDoesNotTellFoldersAreNoIconsEither) {
    files_.makeFolder("icons/a.png");
    files_.write("icons/b.png", "x");
    files_.link("icons/c.png", "b.png");
    const UnknownEntryTypes types;
    auto icons = folder();
    EXPECT_TRUE(icons.endings("a").isEmpty());
    EXPECT_FALSE(icons.endings("b").isEmpty());
    EXPECT_FALSE(icons.endings("c").isEmpty());
}

TEST_P(IconFolderTest, AMissingFolderIsAnEmptyOne) {
    EXPECT_TRUE(folder().endings("a").isEmpty());
}

TEST(IconFolder, ALargeFolderIsReadOnceLookingHasCostAsMuch) {
    const TemporaryTree files;
    files.makeFolder("icons");
    constexpr std::int64_t size = 20'000; // fifty questions' worth
    IconFolder folder(files.at("icons").string(), size);
    for (int i = 0; i < 200; ++i) {
        EXPECT_TRUE(folder.endings("missing" + std::to_string(i)).isEmpty());
    }
    files.write("icons/late.png", "x");
    EXPECT_TRUE(folder.endings("late").isEmpty()); // from memory
}

TEST(IconFolder, AFolderThatWasReadIsNotAskedAgain) {
    const TemporaryTree files;
    files.write("icons/a.png", "x");
    IconFolder folder(files.at("icons").string(), 0);
    EXPECT_FALSE(folder.endings("a").isEmpty());
    files.remove("icons/a.png");
    files.write("icons/b.png", "x");
    EXPECT_FALSE(folder.endings("a").isEmpty());
    EXPECT_TRUE(folder.endings("b").isEmpty());
}

TEST(IconEndings, AnIconsEndingIsTakenOffANameOnce) {
    EXPECT_EQ(withoutIconEnding("foo.png"), "foo");
    EXPECT_EQ(withoutIconEnding("foo.SVG"), "foo");
    EXPECT_EQ(withoutIconEnding("foo.svgz"), "foo");
    EXPECT_EQ(withoutIconEnding("foo.xpm"), "foo");
    EXPECT_EQ(withoutIconEnding("foo.png.png"), "foo.png");
    EXPECT_EQ(withoutIconEnding("org.example.Foo"), "org.example.Foo");
    EXPECT_EQ(withoutIconEnding("foo.jpg"), "foo.jpg");
    EXPECT_EQ(withoutIconEnding(".png"), ".png");
    EXPECT_EQ(withoutIconEnding(""), "");
}
