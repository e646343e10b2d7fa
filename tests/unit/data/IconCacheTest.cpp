#include "data/IconCache.h"

#include "data/PaintedIcons.h"
#include "platform/ApplicationIcons.h"
#include "support/ManualQueue.h"

#include <gtest/gtest.h>

using namespace amberquill;
using namespace Qt::StringLiterals;

namespace {

class CountingIcons final : public ApplicationIcons {
public:
    [[nodiscard]] QImage image(const QString& path, int edge) const override {
        requested.append(path);
        if (!colours.contains(path)) {
            return {};
        }
        QImage icon(edge, edge, QImage::Format_ARGB32_Premultiplied);
        icon.fill(colours.value(path));
        return icon;
    }
    void forget() override {}
    void rest() override { ++rests; }
    [[nodiscard]] QImage genericIcon(int edge) const override {
        ++genericRequests;
        if (!genericColour.isValid()) {
            return {};
        }
        QImage image(edge, edge, QImage::Format_ARGB32_Premultiplied);
        image.fill(genericColour);
        return image;
    }

    int rests = 0;
    mutable int genericRequests = 0;
    QColor genericColour;
    QHash<QString, QColor> colours;
    mutable QStringList requested;
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

TEST_F(IconCacheTest, ThePlaceholderIsShownUntilTheIconIsDecoded) {
    icons_.colours.insert(u"/a"_s, Qt::red);
    EXPECT_EQ(cache_.icon(u"/a"_s, 64), cache_.placeholder(64));
    EXPECT_TRUE(icons_.requested.isEmpty());
    EXPECT_FALSE(cache_.isKnown(u"/a"_s, 64));
    queue_.runPosted();
    EXPECT_EQ(arrived_, QStringList{u"/a:64"_s});
    EXPECT_EQ(cache_.icon(u"/a"_s, 64).pixelColor(32, 32), QColor(Qt::red));
    EXPECT_EQ(cache_.icon(u"/a"_s, 64).size(), QSize(64, 64));
}

TEST_F(IconCacheTest, AnIconIsRequestedFromThePlatformOnce) {
    icons_.colours.insert(u"/a"_s, Qt::red);
    cache_.icon(u"/a"_s, 64);
    cache_.icon(u"/a"_s, 64);
    queue_.runPosted();
    cache_.icon(u"/a"_s, 64);
    queue_.runPosted();
    EXPECT_EQ(icons_.requested, QStringList{u"/a"_s});
}

TEST_F(IconCacheTest, EachSizeIsDecodedSeparately) {
    icons_.colours.insert(u"/a"_s, Qt::red);
    cache_.icon(u"/a"_s, 64);
    cache_.icon(u"/a"_s, 128);
    queue_.runPosted();
    EXPECT_EQ(cache_.icon(u"/a"_s, 64).width(), 64);
    EXPECT_EQ(cache_.icon(u"/a"_s, 128).width(), 128);
}

TEST_F(IconCacheTest, AnAppWithoutAnIconGetsTheGenericIconAndIsNotRequestedAgain) {
    icons_.genericColour = Qt::blue;
    cache_.icon(u"/none"_s, 64);
    queue_.runPosted();
    EXPECT_TRUE(cache_.isKnown(u"/none"_s, 64));
    EXPECT_EQ(arrived_, QStringList{u"/none:64"_s});
    EXPECT_EQ(cache_.icon(u"/none"_s, 64), filled(64, Qt::blue));
    queue_.runPosted();
    EXPECT_EQ(icons_.requested.size(), 1);
    EXPECT_TRUE(cache_.isIdle());
}

TEST_F(IconCacheTest, WithoutAGenericIconOfThePlatformThePaintedOneIsShown) {
    cache_.icon(u"/none"_s, 64);
    queue_.runPosted();
    EXPECT_EQ(arrived_, QStringList{u"/none:64"_s});
    EXPECT_EQ(cache_.icon(u"/none"_s, 64), paintedGenericIcon(64));
}

TEST_F(IconCacheTest, ThePlaceholderIsShownUntilTheIconIsKnownToBeMissing) {
    icons_.genericColour = Qt::blue;
    icons_.colours.insert(u"/a"_s, Qt::red);
    cache_.icon(u"/none"_s, 64);
    queue_.runPosted();
    EXPECT_EQ(cache_.icon(u"/a"_s, 64), cache_.placeholder(64));
}

TEST_F(IconCacheTest, AllAppsShareOneGenericIconPerSize) {
    icons_.genericColour = Qt::blue;
    cache_.icon(u"/none"_s, 64);
    cache_.icon(u"/neither"_s, 64);
    queue_.runPosted();
    arrived_.sort();
    EXPECT_EQ(arrived_, (QStringList{u"/neither:64"_s, u"/none:64"_s}));
    EXPECT_EQ(icons_.genericRequests, 1);
    cache_.icon(u"/nor"_s, 64);
    queue_.runPosted();
    EXPECT_EQ(arrived_.last(), u"/nor:64"_s);
    EXPECT_EQ(icons_.genericRequests, 1);
    EXPECT_EQ(cache_.icon(u"/nor"_s, 64).cacheKey(), cache_.icon(u"/none"_s, 64).cacheKey());
}

TEST_F(IconCacheTest, AnAppWithoutAnIconAtOneSizeHasNoneAtAnotherSize) {
    icons_.genericColour = Qt::blue;
    cache_.icon(u"/none"_s, 64);
    cache_.icon(u"/neither"_s, 48);
    queue_.runPosted();
    EXPECT_EQ(cache_.icon(u"/none"_s, 48), filled(48, Qt::blue));
}

TEST_F(IconCacheTest, AChangedGenericIconReplacesTheFormerOne) {
    icons_.genericColour = Qt::blue;
    cache_.icon(u"/none"_s, 64);
    queue_.runPosted();
    arrived_.clear();
    cache_.retryMissing();
    queue_.runPosted();
    EXPECT_TRUE(arrived_.isEmpty());
    icons_.genericColour = Qt::yellow;
    cache_.retryMissing();
    queue_.runPosted();
    EXPECT_EQ(arrived_, QStringList{u"/none:64"_s});
    EXPECT_EQ(cache_.icon(u"/none"_s, 64), filled(64, Qt::yellow));
}

TEST_F(IconCacheTest, ARestoredAppWithoutAnIconIsKnownToHaveNone) {
    icons_.genericColour = Qt::blue;
    cache_.icon(u"/none"_s, 64);
    queue_.runPosted();
    const auto kept = cache_.snapshot({u"/none"_s});
    EXPECT_EQ(kept, (std::vector<StoredIcon>{{u"/none"_s, filled(64, Qt::blue), true}}));

    cache_.serveFrom(&icons_, &queue_);
    icons_.requested.clear();
    arrived_.clear();
    cache_.restore(kept);
    EXPECT_EQ(cache_.icon(u"/none"_s, 64), filled(64, Qt::blue));
    queue_.runPosted();
    EXPECT_TRUE(icons_.requested.isEmpty());
    cache_.refreshRestored();
    queue_.runPosted();
    EXPECT_EQ(icons_.requested, QStringList{u"/none"_s});
    EXPECT_TRUE(arrived_.isEmpty());
    EXPECT_EQ(cache_.snapshot({u"/none"_s}), kept);
}

TEST_F(IconCacheTest, ARestoredGenericIconIsReplacedByAnIconAndByANewerGenericIcon) {
    cache_.restore({{u"/none"_s, filled(64, Qt::blue), true}, {u"/late"_s, filled(64, Qt::blue), true}});
    icons_.colours.insert(u"/late"_s, Qt::green);
    icons_.genericColour = Qt::yellow;
    cache_.refreshRestored();
    queue_.runPosted();
    EXPECT_EQ(cache_.icon(u"/none"_s, 64), filled(64, Qt::yellow));
    EXPECT_EQ(cache_.icon(u"/late"_s, 64), filled(64, Qt::green));
    EXPECT_TRUE(arrived_.contains(u"/none:64"_s));
    EXPECT_TRUE(arrived_.contains(u"/late:64"_s));
}

TEST_F(IconCacheTest, ARetryFindsAnIconThatWasInstalledLater) {
    cache_.icon(u"/late"_s, 64);
    queue_.runPosted();
    icons_.colours.insert(u"/late"_s, Qt::green);
    cache_.retryMissing();
    queue_.runPosted();
    EXPECT_EQ(arrived_, (QStringList{u"/late:64"_s, u"/late:64"_s})) << "the generic icon, then the icon";
    EXPECT_EQ(cache_.icon(u"/late"_s, 64).pixelColor(1, 1), QColor(Qt::green));
}

TEST_F(IconCacheTest, ARemovedAppKeepsItsIcon) {
    icons_.colours.insert(u"/a"_s, Qt::red);
    cache_.icon(u"/a"_s, 64);
    queue_.runPosted();
    icons_.colours.clear();
    cache_.retryMissing();
    queue_.runPosted();
    EXPECT_EQ(cache_.icon(u"/a"_s, 64).pixelColor(1, 1), QColor(Qt::red));
}

TEST_F(IconCacheTest, ARestoredIconIsShownWithoutARequest) {
    cache_.restore({{u"/a"_s, filled(64, Qt::red)}});
    EXPECT_TRUE(cache_.isKnown(u"/a"_s, 64));
    EXPECT_EQ(cache_.icon(u"/a"_s, 64), filled(64, Qt::red));
    queue_.runPosted();
    EXPECT_TRUE(icons_.requested.isEmpty());
    EXPECT_FALSE(cache_.isKnown(u"/a"_s, 32)) << "only at its own size";
}

TEST_F(IconCacheTest, ARefreshOfRestoredIconsReportsOnlyChanges) {
    cache_.restore({{u"/same"_s, filled(64, Qt::red)}, {u"/other"_s, filled(64, Qt::red)}});
    icons_.colours = {{u"/same"_s, Qt::red}, {u"/other"_s, Qt::blue}};
    cache_.refreshRestored();
    queue_.runPosted();
    EXPECT_EQ(arrived_, QStringList{u"/other:64"_s});
    EXPECT_EQ(cache_.icon(u"/other"_s, 64), filled(64, Qt::blue));
    cache_.refreshRestored();
    queue_.runPosted();
    EXPECT_EQ(icons_.requested.size(), 2) << "once";
}

TEST_F(IconCacheTest, ARestoredIconIsKeptWhileItIsMissingAndRequestedAgain) {
    cache_.restore({{u"/a"_s, filled(64, Qt::red)}});
    cache_.refreshRestored();
    queue_.runPosted();
    EXPECT_EQ(arrived_, QStringList());
    EXPECT_EQ(cache_.icon(u"/a"_s, 64), filled(64, Qt::red));
    icons_.colours.insert(u"/a"_s, Qt::blue);
    cache_.retryMissing();
    queue_.runPosted();
    EXPECT_EQ(cache_.icon(u"/a"_s, 64), filled(64, Qt::blue));
}

TEST_F(IconCacheTest, ADecodedIconIsNotReplacedByARestoredOne) {
    icons_.colours.insert(u"/a"_s, Qt::blue);
    cache_.icon(u"/a"_s, 64);
    queue_.runPosted();
    cache_.restore({{u"/a"_s, filled(64, Qt::red)}});
    EXPECT_EQ(cache_.icon(u"/a"_s, 64), filled(64, Qt::blue));
}

TEST_F(IconCacheTest, ASnapshotIsInOrderOfPathAndEdge) {
    icons_.genericColour = Qt::gray;
    icons_.colours = {{u"/a"_s, Qt::red}, {u"/b"_s, Qt::green}, {u"/c"_s, Qt::blue}};
    for (const QString& path : {u"/c"_s, u"/b"_s, u"/a"_s, u"/none"_s}) {
        cache_.icon(path, 64);
        cache_.icon(path, 16);
    }
    queue_.runPosted();
    const std::vector<StoredIcon> expected{
        {u"/a"_s, filled(16, Qt::red)},           {u"/a"_s, filled(64, Qt::red)},
        {u"/c"_s, filled(16, Qt::blue)},          {u"/c"_s, filled(64, Qt::blue)},
        {u"/none"_s, filled(16, Qt::gray), true}, {u"/none"_s, filled(64, Qt::gray), true}};
    EXPECT_EQ(cache_.snapshot({u"/c"_s, u"/a"_s, u"/none"_s}), expected);
}

TEST_F(IconCacheTest, TheNextLargerSizeIsShownUntilTheIconIsDecoded) {
    icons_.colours.insert(u"/a"_s, Qt::red);
    for (const int edge : {16, 64, 256}) {
        cache_.icon(u"/a"_s, edge);
    }
    queue_.runPosted();
    EXPECT_EQ(cache_.icon(u"/a"_s, 60), filled(64, Qt::red));
    EXPECT_EQ(cache_.icon(u"/a"_s, 100), filled(256, Qt::red));
    EXPECT_EQ(cache_.icon(u"/a"_s, 512), filled(256, Qt::red)) << "no larger size: the largest";
    EXPECT_FALSE(cache_.isKnown(u"/a"_s, 60));
    queue_.runPosted();
    EXPECT_EQ(cache_.icon(u"/a"_s, 60), filled(60, Qt::red));
    EXPECT_EQ(cache_.icon(u"/b"_s, 60), cache_.placeholder(60)) << "not another application's";
}

TEST_F(IconCacheTest, ThePlatformRestsAfterSomeSecondsWithoutARequest) {
    icons_.colours.insert(u"/a"_s, Qt::red);
    queue_.advance(2 * IconCache::restAfter);
    EXPECT_EQ(icons_.rests, 0) << "nothing was requested";
    cache_.icon(u"/a"_s, 64);
    cache_.icon(u"/b"_s, 64);
    queue_.advance(IconCache::restAfter - 0.1);
    EXPECT_EQ(icons_.rests, 0);
    cache_.icon(u"/c"_s, 64);
    queue_.advance(IconCache::restAfter - 0.1);
    EXPECT_EQ(icons_.rests, 0) << "a request restarts the time";
    cache_.icon(u"/a"_s, 64);
    queue_.advance(0.1);
    EXPECT_EQ(icons_.rests, 1) << "a known icon is no request";
    queue_.advance(2 * IconCache::restAfter);
    EXPECT_EQ(icons_.rests, 1) << "once";
    cache_.icon(u"/d"_s, 64);
    queue_.advance(IconCache::restAfter);
    EXPECT_EQ(icons_.rests, 2);
}

TEST_F(IconCacheTest, AFormerSourceIsNotToldToRest) {
    cache_.icon(u"/a"_s, 64);
    queue_.runPosted();
    cache_.serveFrom(nullptr, nullptr);
    queue_.advance(2 * IconCache::restAfter);
    EXPECT_EQ(icons_.rests, 0);
}

TEST_F(IconCacheTest, AnAnswerFromBeforeTheSourceWasSetIsIgnored) {
    icons_.colours.insert(u"/a"_s, Qt::red);
    icons_.genericColour = Qt::blue;
    cache_.restore({{u"/none"_s, filled(32, Qt::green), true}});
    cache_.icon(u"/a"_s, 64);
    cache_.retryMissing();
    cache_.serveFrom(&icons_, &queue_);
    queue_.runPosted();
    EXPECT_TRUE(arrived_.isEmpty());
    EXPECT_FALSE(cache_.isKnown(u"/a"_s, 64));
    EXPECT_TRUE(cache_.isIdle());
}

TEST_F(IconCacheTest, ThePlaceholderIsGreyAndOfTheRequestedSize) {
    const QImage placeholder = cache_.placeholder(100);
    EXPECT_EQ(placeholder.size(), QSize(100, 100));
    EXPECT_EQ(placeholder.pixelColor(0, 0).alpha(), 0);
    const QColor middle = placeholder.pixelColor(50, 50);
    EXPECT_GT(middle.alpha(), 0);
    EXPECT_EQ(middle.red(), middle.blue());
    EXPECT_EQ(middle.red(), middle.green());
}

namespace {

// A cache with room for three icons of an edge of 64.
class SmallIconCacheTest : public testing::Test {
protected:
    void SetUp() override {
        for (int number = 0; number < 10; ++number) {
            icons_.colours.insert(path(number), QColor(20 * number, 0, 0));
        }
        cache_.serveFrom(&icons_, &queue_);
    }

    static QString path(int number) { return u"/%1"_s.arg(number); }
    bool isCached(int number) const { return cache_.isKnown(path(number), 64); }

    void decode(int number, int edge = 64) {
        cache_.icon(path(number), edge);
        queue_.runPosted();
    }

    static constexpr qsizetype limit = 3 * (64 * 64 * 4 + 200);
    ManualQueue queue_;
    CountingIcons icons_;
    IconCache cache_{limit};
};

} // namespace

TEST_F(SmallIconCacheTest, TheLeastRecentlyRequestedIconsAreEvictedFirst) {
    for (const int number : {0, 1, 2}) {
        decode(number);
    }
    decode(0); // requested again
    decode(3);
    EXPECT_FALSE(isCached(1));
    EXPECT_TRUE(isCached(0) && isCached(2) && isCached(3));
    for (int number = 0; number < 10; ++number) {
        decode(number);
        EXPECT_LE(cache_.evictableBytes(), limit);
    }
}

TEST_F(SmallIconCacheTest, AnEvictedIconIsDecodedAgainOnRequest) {
    for (int number = 0; number < 10; ++number) {
        decode(number);
    }
    ASSERT_FALSE(isCached(0));
    icons_.requested.clear();
    EXPECT_EQ(cache_.icon(path(0), 64), cache_.placeholder(64));
    queue_.runPosted();
    EXPECT_EQ(icons_.requested, QStringList{path(0)});
    EXPECT_EQ(cache_.icon(path(0), 64), filled(64, QColor(0, 0, 0)));
}

TEST_F(SmallIconCacheTest, IconsOfNeededAppsAreNotEvicted) {
    cache_.setNeeded({path(0), path(1)});
    for (int number = 0; number < 10; ++number) {
        decode(number);
    }
    EXPECT_TRUE(isCached(0) && isCached(1));
    EXPECT_LE(cache_.evictableBytes(), limit) << "the limit holds for the others";
    cache_.setNeeded({});
    decode(5, 32);
    EXPECT_FALSE(isCached(0) && isCached(1)) << "no longer needed";
}

TEST_F(SmallIconCacheTest, OnlyTheLatestSizeOfANeededAppIsNotEvicted) {
    cache_.setNeeded({path(0)});
    for (int edge = 40; edge <= 64; ++edge) {
        decode(0, edge);
    }
    EXPECT_FALSE(cache_.isKnown(path(0), 40));
    EXPECT_TRUE(cache_.isKnown(path(0), 64));
    EXPECT_LE(cache_.evictableBytes(), limit);
}

TEST_F(SmallIconCacheTest, ASharedImageIsNotEvicted) {
    decode(0);
    {
        const QImage shown = cache_.icon(path(0), 64);
        for (int number = 1; number < 10; ++number) {
            decode(number);
        }
        EXPECT_TRUE(isCached(0));
    }
    decode(1);
    EXPECT_FALSE(isCached(0)) << "no longer shared";
}

TEST_F(SmallIconCacheTest, AppsWithoutAnIconCountTowardsTheLimit) {
    for (int number = 100; number < 1000; ++number) {
        decode(number);
    }
    EXPECT_LE(cache_.evictableBytes(), limit);
    EXPECT_FALSE(isCached(100));
    EXPECT_TRUE(isCached(999));
}

TEST_F(SmallIconCacheTest, ShrinkingKeepsNeededIconsAndSharedImages) {
    cache_.setNeeded({path(0)});
    for (const int number : {0, 1, 2}) {
        decode(number);
    }
    const QImage shown = cache_.icon(path(1), 64);
    cache_.shrink();
    EXPECT_TRUE(isCached(0) && isCached(1));
    EXPECT_FALSE(isCached(2));
    EXPECT_EQ(cache_.evictableBytes(), 0);
}

TEST_F(SmallIconCacheTest, AnEvictedSizeIsNotShownForAnother) {
    decode(0, 32);
    cache_.shrink();
    EXPECT_EQ(cache_.icon(path(0), 64), cache_.placeholder(64));
}
