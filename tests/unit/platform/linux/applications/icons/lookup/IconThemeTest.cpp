#include "platform/linux/applications/icons/lookup/IconTheme.h"

#include "support/IconFiles.h"

#include <gtest/gtest.h>

using namespace amberquill;
using namespace amberquill::desktop;

namespace {

constexpr std::int64_t before = 1'000'000;
constexpr std::int64_t later = 2'000'000;

// Two base folders with themes, "home" before "system".
class IconThemeTest : public testing::Test {
protected:
    IconTheme theme(std::string_view name = "test") const {
        return {name, {files_.at("home").string(), files_.at("system").string()}};
    }

    // The found file's path below the test's folder; empty: none.
    std::string found(IconTheme& theme, std::string_view name, int edge, int skip = 0) const {
        const auto file = theme.find(name, edge, skip);
        return file ? std::filesystem::path(*file).lexically_relative(files_.at("")).string() : "";
    }
    std::string found(std::string_view name, int edge, int skip = 0) const {
        auto made = theme();
        return found(made, name, edge, skip);
    }

    // A cache for the theme in the system's folder, newer than the directories.
    void writeCache(const std::vector<std::string>& directories, const CachedIcons& icons) const {
        files_.write("system/test/icon-theme.cache", themeCache(directories, icons));
        for (const auto& directory : directories) {
            setModified(files_.path(("system/test/" + directory).c_str()), before);
        }
        setModified(files_.path("system/test/icon-theme.cache"), later);
    }

    TemporaryTree files_;
};

} // namespace

TEST_F(IconThemeTest, TheBestFileIsFound) {
    files_.write("system/test/index.theme",
                 themeIndex({{"48/apps", fixedSize(48)}, {"128/apps", fixedSize(128)}}));
    files_.write("system/test/48/apps/x.png", "x");
    files_.write("system/test/128/apps/x.png", "x");
    EXPECT_EQ(found("x", 48), "system/test/48/apps/x.png");
    EXPECT_EQ(found("x", 96), "system/test/128/apps/x.png");
    EXPECT_EQ(found("x", 500), "system/test/128/apps/x.png");
    EXPECT_EQ(found("y", 48), "");
}

TEST_F(IconThemeTest, PngIsPreferredToSvgAndSvgToXpm) {
    files_.write("system/test/index.theme", themeIndex({{"48/apps", fixedSize(48)}}));
    for (const auto* const extension : {"xpm", "svgz", "svg", "png"}) {
        const auto path = std::string("system/test/48/apps/x.") + extension;
        files_.write(path, "x");
        EXPECT_EQ(found("x", 48), path);
    }
    EXPECT_EQ(found("x", 48, 1), "system/test/48/apps/x.svg");
}

TEST_F(IconThemeTest, AThemeIsSpreadOverTheBaseFolders) {
    files_.write("system/test/index.theme",
                 themeIndex({{"48/apps", fixedSize(48)}, {"128/apps", fixedSize(128)}}));
    files_.write("system/test/48/apps/x.png", "x");
    files_.write("system/test/128/apps/y.png", "x");
    files_.write("home/test/48/apps/y.png", "x");
    files_.write("home/test/128/apps/x.png", "x");
    EXPECT_EQ(found("x", 48), "system/test/48/apps/x.png"); // the size counts before the folder
    EXPECT_EQ(found("x", 128), "home/test/128/apps/x.png");
    EXPECT_EQ(found("y", 48), "home/test/48/apps/y.png");
}

TEST_F(IconThemeTest, AtOneSizeTheMostWantedFolderComesFirst) {
    files_.write("system/test/index.theme", themeIndex({{"48/apps", fixedSize(48)}}));
    files_.write("system/test/48/apps/x.png", "x");
    files_.write("home/test/48/apps/x.png", "x");
    EXPECT_EQ(found("x", 48), "home/test/48/apps/x.png");
    EXPECT_EQ(found("x", 48, 1), "system/test/48/apps/x.png");
    EXPECT_EQ(found("x", 48, 2), "");
}

TEST_F(IconThemeTest, EachFoldersIndexAddsItsDirectories) {
    files_.write("system/test/index.theme", themeIndex({{"48/apps", fixedSize(48)}}, "one"));
    files_.write("home/test/index.theme", themeIndex({{"64/apps", fixedSize(64)}}, "two"));
    files_.write("system/test/64/apps/x.png", "x");
    auto made = theme();
    EXPECT_EQ(found(made, "x", 64), "system/test/64/apps/x.png");
    EXPECT_EQ(made.inherits(), std::vector<std::string>{"two"});
}

TEST_F(IconThemeTest, WithoutAnIndexAThemeHasNoIcons) {
    files_.write("system/test/48x48/apps/x.png", "x");
    EXPECT_EQ(found("x", 48), "");
}

TEST_F(IconThemeTest, HicolorNeedsNoIndex) {
    files_.write("home/hicolor/48x48/apps/x.png", "x");
    files_.write("home/hicolor/64x64@2/apps/x.png", "x");
    files_.write("home/hicolor/scalable/apps/x.svg", "x");
    files_.write("home/hicolor/48x64/apps/x.png", "x");
    files_.write("home/hicolor/0x0/apps/x.png", "x");
    files_.write("home/hicolor/48x48@99/apps/x.png", "x");
    files_.write("home/hicolor/48x48@2x/apps/x.png", "x");
    auto hicolor = theme("hicolor");
    EXPECT_EQ(found(hicolor, "x", 48), "home/hicolor/48x48/apps/x.png");
    EXPECT_EQ(found(hicolor, "x", 128), "home/hicolor/64x64@2/apps/x.png");
    EXPECT_EQ(found(hicolor, "x", 256), "home/hicolor/scalable/apps/x.svg");
    EXPECT_EQ(found(hicolor, "x", 256, 3), "");
}

TEST_F(IconThemeTest, HicolorWithoutAnIndexUsesTheOtherFoldersIndex) {
    files_.write("system/hicolor/index.theme",
                 themeIndex({{"48x48/apps", fixedSize(48)}, {"48x48/places", fixedSize(48)}}));
    files_.write("home/hicolor/48x48/places/x.png", "x");
    files_.write("home/hicolor/1024x1024/apps/y.png", "x");
    auto hicolor = theme("hicolor");
    EXPECT_EQ(found(hicolor, "x", 48), "home/hicolor/48x48/places/x.png");
    EXPECT_EQ(found(hicolor, "y", 48), "home/hicolor/1024x1024/apps/y.png");
}

TEST_F(IconThemeTest, ADanglingLinkIsSkipped) {
    files_.write("system/test/index.theme",
                 themeIndex({{"48/apps", fixedSize(48)}, {"64/apps", fixedSize(64)}}));
    files_.link("system/test/48/apps/x.png", "gone.png");
    files_.write("system/test/64/apps/x.png", "x");
    EXPECT_EQ(found("x", 48), "system/test/64/apps/x.png");
}

TEST_F(IconThemeTest, AFolderUnderTwoNamesCountsUnderBoth) {
    auto doubled = fixedSize(48);
    doubled += "\nScale=2";
    files_.write("system/test/index.theme", themeIndex({{"48/apps", fixedSize(48)}, {"48@2/apps", doubled}}));
    files_.write("system/test/48/apps/x.png", "x");
    files_.link("system/test/48@2", "48");
    EXPECT_EQ(found("x", 48), "system/test/48/apps/x.png");
    EXPECT_EQ(found("x", 96), "system/test/48@2/apps/x.png");
}

TEST_F(IconThemeTest, TheCacheIsUsedIfItIsNewerThanAFolder) {
    files_.write("system/test/index.theme",
                 themeIndex({{"48/apps", fixedSize(48)}, {"64/apps", fixedSize(64)}}));
    files_.write("system/test/48/apps/x.png", "x");
    files_.write("system/test/64/apps/x.png", "x");
    files_.write("system/test/64/apps/hidden.png", "x");
    writeCache({"48/apps", "64/apps"}, {{"x", {{0, pngFlag}, {1, pngFlag}}}});
    EXPECT_EQ(found("x", 48), "system/test/48/apps/x.png");
    EXPECT_EQ(found("x", 64), "system/test/64/apps/x.png");
    EXPECT_EQ(found("hidden", 64), ""); // the folder was not read
}

TEST_F(IconThemeTest, AFolderNewerThanTheCacheIsRead) {
    files_.write("system/test/index.theme",
                 themeIndex({{"48/apps", fixedSize(48)}, {"64/apps", fixedSize(64)}}));
    files_.write("system/test/48/apps/x.png", "x");
    files_.write("system/test/64/apps/x.png", "x");
    writeCache({"48/apps", "64/apps"}, {{"x", {{0, pngFlag}}}, {"removed", {{1, pngFlag}}}});
    setModified(files_.path("system/test/64/apps"), later + 1);
    EXPECT_EQ(found("x", 48), "system/test/48/apps/x.png");
    EXPECT_EQ(found("x", 64), "system/test/64/apps/x.png");
    EXPECT_EQ(found("removed", 64), "");
}

TEST_F(IconThemeTest, AFolderMadeAfterTheCacheIsRead) {
    files_.write("system/test/index.theme",
                 themeIndex({{"48/apps", fixedSize(48)}, {"64/apps", fixedSize(64)}}));
    files_.write("system/test/48/apps/x.png", "x");
    writeCache({"48/apps"}, {{"x", {{0, pngFlag}}}});
    files_.write("system/test/64/apps/x.png", "x");
    EXPECT_EQ(found("x", 64), "system/test/64/apps/x.png");
}

TEST_F(IconThemeTest, FilesThatAreOnlyInTheCacheAreSkipped) {
    files_.write("system/test/index.theme",
                 themeIndex({{"48/apps", fixedSize(48)}, {"64/apps", fixedSize(64)}}));
    files_.makeFolder("system/test/48/apps");
    files_.write("system/test/64/apps/x.png", "x");
    writeCache({"48/apps", "64/apps"}, {{"x", {{0, pngFlag}, {1, pngFlag}}}});
    EXPECT_EQ(found("x", 48), "system/test/64/apps/x.png");
}

TEST_F(IconThemeTest, CompressedDrawingsAreFoundWithoutTheCache) {
    files_.write("system/test/index.theme",
                 themeIndex({{"48/apps", fixedSize(48)},
                             {"scalable/apps", "Size=128\nMinSize=8\nMaxSize=512\nType=Scalable"}}));
    files_.makeFolder("system/test/48/apps");
    files_.write("system/test/scalable/apps/x.svgz", "x");
    writeCache({"48/apps", "scalable/apps"}, {});
    EXPECT_EQ(found("x", 48), "system/test/scalable/apps/x.svgz");
}

TEST_F(IconThemeTest, TooManyDirectoriesAreLeftOut) {
    std::vector<std::string> bases;
    for (const std::string number : {"0", "1", "2", "3", "4"}) {
        std::vector<std::pair<QByteArray, QByteArray>> directories;
        for (int i = 0; i < 4096; ++i) {
            directories.emplace_back(QByteArray::fromStdString(number) + "-" + QByteArray::number(i),
                                     "Size=16");
        }
        files_.write(number + "/test/index.theme", themeIndex(directories));
        files_.write(number + "/test/" + number + "-4095/x" + number + ".png", "x");
        bases.push_back(files_.at(number).string());
    }
    IconTheme made("test", bases);
    EXPECT_EQ(found(made, "x0", 16), "0/test/0-4095/x0.png");
    EXPECT_EQ(found(made, "x3", 16), "3/test/3-4095/x3.png");
    EXPECT_EQ(found(made, "x4", 16), "");
}

TEST_F(IconThemeTest, ASearchEndsAfterTooManyMissingFiles) {
    std::vector<std::pair<QByteArray, QByteArray>> directories;
    for (int i = 1; i <= 400; ++i) {
        const auto name = std::to_string(i);
        directories.emplace_back(QByteArray::fromStdString(name), fixedSize(i));
        files_.link("system/test/" + name + "/few.png", i > 200 ? "missing" : "../file");
        files_.link("system/test/" + name + "/many.png", i > 100 ? "missing" : "../file");
    }
    files_.write("system/test/file", "x");
    files_.write("system/test/index.theme", themeIndex(directories));
    EXPECT_EQ(found("few", 201), "system/test/200/few.png");
    EXPECT_EQ(found("many", 101), "");
}
