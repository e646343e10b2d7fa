#include "platform/linux/applications/icons/lookup/IconThemeCache.h"

#include "platform/linux/files/FolderReader.h"
#include "support/IconFiles.h"

#include <gtest/gtest.h>

using namespace amberquill;
using namespace amberquill::desktop;

namespace {

constexpr quint16 xpmFlag = 1;
constexpr quint16 svgFlag = 2;

class IconThemeCacheTest : public testing::Test {
protected:
    std::optional<IconThemeCache> open(const QByteArray& bytes) const {
        files_.write("icon-theme.cache", bytes);
        return IconThemeCache::open(openFolder(AT_FDCWD, files_.path().toUtf8().constData()).get());
    }

    // The cache's answer for a name, as text.
    static std::string answer(const IconThemeCache& cache, std::string_view name) {
        std::string text;
        for (const auto& image : cache.find(name)) {
            text += cache.directories()[image.directory];
            for (const auto extension : iconExtensions) {
                text += image.extensions.contains(extension) ? extensionText(extension) : "";
            }
            text += ' ';
        }
        return text;
    }

    TemporaryTree files_;
};

} // namespace

TEST_F(IconThemeCacheTest, ANameIsFoundInItsDirectories) {
    CachedIcons icons{{"one", {{0, pngFlag}, {1, svgFlag | pngFlag}}}, {"t\xC3\xBCr", {{1, xpmFlag}}}};
    for (int i = 0; i < 40; ++i) {
        icons["filler" + std::to_string(i)] = {{0, pngFlag}};
    }
    const auto cache = open(themeCache({"48x48/apps", "scalable/apps"}, icons));
    ASSERT_TRUE(cache);
    EXPECT_EQ(cache->directories(), (std::vector<std::string>{"48x48/apps", "scalable/apps"}));
    EXPECT_EQ(answer(*cache, "one"), "48x48/apps.png scalable/apps.png.svg ");
    EXPECT_EQ(answer(*cache, "t\xC3\xBCr"), "scalable/apps.xpm ");
    EXPECT_EQ(answer(*cache, "filler39"), "48x48/apps.png ");
    EXPECT_EQ(answer(*cache, "missing"), "");
    EXPECT_EQ(answer(*cache, ""), "");
}

TEST_F(IconThemeCacheTest, AnInvalidCacheIsRefused) {
    EXPECT_FALSE(open(""));
    EXPECT_FALSE(open("something else altogether"));
    auto other = themeCache({"a"}, {});
    other[1] = 2; // another version
    EXPECT_FALSE(open(other));
    EXPECT_FALSE(open(themeCache({"a"}, {}, 0)));
    files_.remove("icon-theme.cache");
    files_.makeFolder("icon-theme.cache");
    EXPECT_FALSE(IconThemeCache::open(openFolder(AT_FDCWD, files_.path().toUtf8().constData()).get()));
}

TEST_F(IconThemeCacheTest, ACyclicChainEnds) {
    auto bytes = themeCache({"a"}, {{"x", {{0, pngFlag}}}}, 1);
    const auto entry = bytes.size() - 12;
    bytes.replace(entry, 4, bigEndian(static_cast<quint32>(entry)));
    const auto cache = open(bytes);
    ASSERT_TRUE(cache);
    EXPECT_EQ(answer(*cache, "x"), "a.png ");
    EXPECT_EQ(answer(*cache, "y"), "");
}

TEST_F(IconThemeCacheTest, ADirectoryNumberThatIsTooLargeIsLeftOut) {
    const auto cache = open(themeCache({"a"}, {{"x", {{5, pngFlag}, {0, svgFlag}}}}));
    ASSERT_TRUE(cache);
    EXPECT_EQ(answer(*cache, "x"), "a.svg ");
}

TEST_F(IconThemeCacheTest, RandomOffsetsAreHandled) {
    const auto whole = themeCache({"a", "b"}, {{"x", {{0, pngFlag}}}, {"y", {{1, svgFlag}}}}, 2);
    for (qsizetype size = 0; size < whole.size(); ++size) {
        if (const auto cache = open(whole.first(size))) {
            EXPECT_LE(cache->find("x").size(), 1U);
        }
    }
    for (qsizetype at = 4; at + 4 <= whole.size(); ++at) {
        for (const quint32 value : {0U, 1U, 0x7FFFFFFFU, 0xFFFFFFF0U, 0xFFFFFFFFU}) {
            auto broken = whole;
            broken.replace(at, 4, bigEndian(value));
            if (const auto cache = open(broken)) {
                for (const auto& image : cache->find("y")) {
                    EXPECT_LT(image.directory, cache->directories().size());
                }
            }
        }
    }
}
