#include "platform/linux/applications/icons/lookup/IconFolder.h"

#include "support/FaultySystemCalls.h"
#include "support/IconFiles.h"

#include <gtest/gtest.h>

using namespace amberquill;
using namespace amberquill::desktop;

namespace {

// The parameter is whether the folder is read, or so large that single files are probed.
class IconFolderTest : public testing::TestWithParam<std::int64_t> {
protected:
    IconFolder folder() const { return {files_.at("icons").string(), GetParam()}; }

    TemporaryTree files_;
};

} // namespace

INSTANTIATE_TEST_SUITE_P(BothWays, IconFolderTest, testing::Values(0, 1'000'000),
                         [](const auto& size) { return size.param == 0 ? "Read" : "LookedFor"; });

TEST_P(IconFolderTest, AnIconHasTheExtensionsOfItsFiles) {
    for (const auto* const name :
         {"a.png", "a.svg", "a.xpm", "b.svgz", "org.x.B.c.png", "d.PNG", "e.jpg", "f", ".png"}) {
        files_.write(std::filesystem::path("icons") / name, "x");
    }
    auto icons = folder();
    EXPECT_EQ(icons.extensions("a"),
              (IconExtensions{IconExtension::Png, IconExtension::Svg, IconExtension::Xpm}));
    EXPECT_EQ(icons.extensions("a").first(), IconExtension::Png);
    EXPECT_EQ(icons.extensions("b"), IconExtensions{IconExtension::Svgz});
    EXPECT_EQ(icons.extensions("org.x.B.c"), IconExtensions{IconExtension::Png});
    for (const auto* const name : {"d", "e", "f", "A", "missing"}) {
        EXPECT_TRUE(icons.extensions(name).isEmpty()) << name;
    }
}

TEST_P(IconFolderTest, LinksAreIconsAndFoldersAreNot) {
    files_.makeFolder("icons/a.png");
    files_.write("elsewhere.svg", "x");
    files_.link("icons/b.svg", files_.at("elsewhere.svg"));
    auto icons = folder();
    EXPECT_TRUE(icons.extensions("a").isEmpty());
    EXPECT_EQ(icons.extensions("b"), IconExtensions{IconExtension::Svg});
}

TEST_P(IconFolderTest, FoldersAreNoIconsWithoutEntryTypesEither) {
    files_.makeFolder("icons/a.png");
    files_.write("icons/b.png", "x");
    files_.link("icons/c.png", "b.png");
    const UnknownEntryTypes types;
    auto icons = folder();
    EXPECT_TRUE(icons.extensions("a").isEmpty());
    EXPECT_FALSE(icons.extensions("b").isEmpty());
    EXPECT_FALSE(icons.extensions("c").isEmpty());
}

TEST_P(IconFolderTest, AMissingFolderIsEmpty) {
    EXPECT_TRUE(folder().extensions("a").isEmpty());
}

TEST(IconFolder, ALargeFolderIsReadAfterManyProbes) {
    const TemporaryTree files;
    files.makeFolder("icons");
    constexpr std::int64_t size = 20'000; // as much as fifty probes
    IconFolder folder(files.at("icons").string(), size);
    for (int i = 0; i < 200; ++i) {
        EXPECT_TRUE(folder.extensions("missing" + std::to_string(i)).isEmpty());
    }
    files.write("icons/late.png", "x");
    EXPECT_TRUE(folder.extensions("late").isEmpty()); // from memory
}

TEST(IconFolder, AReadFolderIsKeptInMemory) {
    const TemporaryTree files;
    files.write("icons/a.png", "x");
    IconFolder folder(files.at("icons").string(), 0);
    EXPECT_FALSE(folder.extensions("a").isEmpty());
    files.remove("icons/a.png");
    files.write("icons/b.png", "x");
    EXPECT_FALSE(folder.extensions("a").isEmpty());
    EXPECT_TRUE(folder.extensions("b").isEmpty());
}

TEST(IconExtensions, AnIconsExtensionIsRemovedOnce) {
    EXPECT_EQ(withoutIconExtension("foo.png"), "foo");
    EXPECT_EQ(withoutIconExtension("foo.SVG"), "foo");
    EXPECT_EQ(withoutIconExtension("foo.svgz"), "foo");
    EXPECT_EQ(withoutIconExtension("foo.xpm"), "foo");
    EXPECT_EQ(withoutIconExtension("foo.png.png"), "foo.png");
    EXPECT_EQ(withoutIconExtension("org.example.Foo"), "org.example.Foo");
    EXPECT_EQ(withoutIconExtension("foo.jpg"), "foo.jpg");
    EXPECT_EQ(withoutIconExtension(".png"), ".png");
    EXPECT_EQ(withoutIconExtension(""), "");
}
