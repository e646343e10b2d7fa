#include "data/IconCache.h"

#include "platform/ApplicationIcons.h"
#include "support/ManualQueue.h"

#include <gtest/gtest.h>

using namespace amberquill;
using namespace Qt::StringLiterals;

namespace {

class CountingIcons final : public ApplicationIcons {
public:
    [[nodiscard]] QImage image(const QString& path, int edge) const override {
        asked.append(path);
        if (!colours.contains(path)) {
            return {};
        }
        QImage icon(edge, edge, QImage::Format_ARGB32_Premultiplied);
        icon.fill(colours.value(path));
        return icon;
    }
    void forget() override {}

    QHash<QString, QColor> colours;
    mutable QStringList asked;
};

QImage filled(int edge, const QColor& colour) {
    QImage image(edge, edge, QImage::Format_ARGB32_Premultiplied);
    image.fill(colour);
    return image;
}

class IconCacheTest : public testing::Test {
protected:
    void SetUp() override {
        cache_.serveFrom(&icons_, &queue_);
        QObject::connect(&cache_, &IconCache::arrived, [this](const QString& path, int edge) {
            arrived_.append(path + u':' + QString::number(edge));
        });
    }

    ManualQueue queue_;
    CountingIcons icons_;
    IconCache cache_;
    QStringList arrived_;
};

} // namespace

TEST_F(IconCacheTest, ThePlaceholderStandsInUntilTheIconIsDecoded) {
    icons_.colours.insert(u"/a"_s, Qt::red);
    EXPECT_EQ(cache_.icon(u"/a"_s, 64), cache_.placeholder(64));
    EXPECT_TRUE(icons_.asked.isEmpty());
    EXPECT_FALSE(cache_.isKnown(u"/a"_s, 64));
    queue_.runPosted();
    EXPECT_EQ(arrived_, QStringList{u"/a:64"_s});
    EXPECT_EQ(cache_.icon(u"/a"_s, 64).pixelColor(32, 32), QColor(Qt::red));
    EXPECT_EQ(cache_.icon(u"/a"_s, 64).size(), QSize(64, 64));
}

TEST_F(IconCacheTest, AskingTwiceAsksThePlatformOnce) {
    icons_.colours.insert(u"/a"_s, Qt::red);
    cache_.icon(u"/a"_s, 64);
    cache_.icon(u"/a"_s, 64);
    queue_.runPosted();
    cache_.icon(u"/a"_s, 64);
    queue_.runPosted();
    EXPECT_EQ(icons_.asked, QStringList{u"/a"_s});
}

TEST_F(IconCacheTest, EachSizeIsDecodedForItself) {
    icons_.colours.insert(u"/a"_s, Qt::red);
    cache_.icon(u"/a"_s, 64);
    cache_.icon(u"/a"_s, 128);
    queue_.runPosted();
    EXPECT_EQ(cache_.icon(u"/a"_s, 64).width(), 64);
    EXPECT_EQ(cache_.icon(u"/a"_s, 128).width(), 128);
}

TEST_F(IconCacheTest, AnAppWithoutAnIconKeepsThePlaceholderAndIsNotAskedAgain) {
    cache_.icon(u"/none"_s, 64);
    queue_.runPosted();
    EXPECT_TRUE(cache_.isKnown(u"/none"_s, 64));
    EXPECT_EQ(cache_.icon(u"/none"_s, 64), cache_.placeholder(64));
    queue_.runPosted();
    EXPECT_EQ(icons_.asked.size(), 1);
    EXPECT_TRUE(arrived_.isEmpty());
}

TEST_F(IconCacheTest, AnIconThatComesLaterIsFoundWhenAskedAgain) {
    cache_.icon(u"/late"_s, 64);
    queue_.runPosted();
    icons_.colours.insert(u"/late"_s, Qt::green);
    cache_.retryMissing();
    queue_.runPosted();
    EXPECT_EQ(arrived_, QStringList{u"/late:64"_s});
    EXPECT_EQ(cache_.icon(u"/late"_s, 64).pixelColor(1, 1), QColor(Qt::green));
}

TEST_F(IconCacheTest, AnAppThatIsRemovedKeepsItsIcon) {
    icons_.colours.insert(u"/a"_s, Qt::red);
    cache_.icon(u"/a"_s, 64);
    queue_.runPosted();
    icons_.colours.clear();
    cache_.retryMissing();
    queue_.runPosted();
    EXPECT_EQ(cache_.icon(u"/a"_s, 64).pixelColor(1, 1), QColor(Qt::red));
}

TEST_F(IconCacheTest, ARememberedIconIsShownWithoutAskingThePlatform) {
    cache_.remember({{u"/a"_s, filled(64, Qt::red)}});
    EXPECT_TRUE(cache_.isKnown(u"/a"_s, 64));
    EXPECT_EQ(cache_.icon(u"/a"_s, 64), filled(64, Qt::red));
    queue_.runPosted();
    EXPECT_TRUE(icons_.asked.isEmpty());
    EXPECT_FALSE(cache_.isKnown(u"/a"_s, 32)) << "at its own size";
}

TEST_F(IconCacheTest, WhatWasRememberedIsLookedUpAgainAndOnlyChangesAreTold) {
    cache_.remember({{u"/same"_s, filled(64, Qt::red)}, {u"/other"_s, filled(64, Qt::red)}});
    icons_.colours = {{u"/same"_s, Qt::red}, {u"/other"_s, Qt::blue}};
    cache_.refreshRemembered();
    queue_.runPosted();
    EXPECT_EQ(arrived_, QStringList{u"/other:64"_s});
    EXPECT_EQ(cache_.icon(u"/other"_s, 64), filled(64, Qt::blue));
    cache_.refreshRemembered();
    queue_.runPosted();
    EXPECT_EQ(icons_.asked.size(), 2) << "once";
}

TEST_F(IconCacheTest, ARememberedIconIsNotReplacedByNoneAndIsAskedForAgainLater) {
    cache_.remember({{u"/a"_s, filled(64, Qt::red)}});
    cache_.refreshRemembered();
    queue_.runPosted();
    EXPECT_EQ(arrived_, QStringList());
    EXPECT_EQ(cache_.icon(u"/a"_s, 64), filled(64, Qt::red));
    icons_.colours.insert(u"/a"_s, Qt::blue);
    cache_.retryMissing();
    queue_.runPosted();
    EXPECT_EQ(cache_.icon(u"/a"_s, 64), filled(64, Qt::blue));
}

TEST_F(IconCacheTest, ADecodedIconIsNotReplacedByARememberedOne) {
    icons_.colours.insert(u"/a"_s, Qt::blue);
    cache_.icon(u"/a"_s, 64);
    queue_.runPosted();
    cache_.remember({{u"/a"_s, filled(64, Qt::red)}});
    EXPECT_EQ(cache_.icon(u"/a"_s, 64), filled(64, Qt::blue));
}

TEST_F(IconCacheTest, TheDecodedIconsOfSomeAppsAreGivenInOrder) {
    icons_.colours = {{u"/a"_s, Qt::red}, {u"/b"_s, Qt::green}, {u"/c"_s, Qt::blue}};
    for (const QString& path : {u"/c"_s, u"/b"_s, u"/a"_s, u"/none"_s}) {
        cache_.icon(path, 64);
        cache_.icon(path, 16);
    }
    queue_.runPosted();
    const std::vector<KeptIcon> expected{{u"/a"_s, filled(16, Qt::red)},
                                         {u"/a"_s, filled(64, Qt::red)},
                                         {u"/c"_s, filled(16, Qt::blue)},
                                         {u"/c"_s, filled(64, Qt::blue)}};
    EXPECT_EQ(cache_.decoded({u"/c"_s, u"/a"_s, u"/none"_s}), expected);
}

TEST_F(IconCacheTest, TheIconOfTheNextLargerSizeStandsInUntilItIsDecoded) {
    icons_.colours.insert(u"/a"_s, Qt::red);
    for (const int edge : {16, 64, 256}) {
        cache_.icon(u"/a"_s, edge);
    }
    queue_.runPosted();
    EXPECT_EQ(cache_.icon(u"/a"_s, 60), filled(64, Qt::red));
    EXPECT_EQ(cache_.icon(u"/a"_s, 100), filled(256, Qt::red));
    EXPECT_EQ(cache_.icon(u"/a"_s, 512), filled(256, Qt::red)) << "or else the largest";
    EXPECT_FALSE(cache_.isKnown(u"/a"_s, 60));
    queue_.runPosted();
    EXPECT_EQ(cache_.icon(u"/a"_s, 60), filled(60, Qt::red));
    EXPECT_EQ(cache_.icon(u"/b"_s, 60), cache_.placeholder(60)) << "not another application's";
}

TEST_F(IconCacheTest, ThePlaceholderIsNeutralAndOfTheSizeAskedFor) {
    const QImage placeholder = cache_.placeholder(100);
    EXPECT_EQ(placeholder.size(), QSize(100, 100));
    EXPECT_EQ(placeholder.pixelColor(0, 0).alpha(), 0);
    const QColor middle = placeholder.pixelColor(50, 50);
    EXPECT_GT(middle.alpha(), 0);
    EXPECT_EQ(middle.red(), middle.blue());
    EXPECT_EQ(middle.red(), middle.green());
}
