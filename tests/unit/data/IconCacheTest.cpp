#include "data/IconCache.h"

#include "data/IconGlyph.h"

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
    void rest() override { ++rests; }
    [[nodiscard]] QImage standIn(int edge) const override {
        ++standInsAsked;
        if (!standInColour.isValid()) {
            return {};
        }
        QImage image(edge, edge, QImage::Format_ARGB32_Premultiplied);
        image.fill(standInColour);
        return image;
    }

    int rests = 0;
    mutable int standInsAsked = 0;
    QColor standInColour;
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

TEST_F(IconCacheTest, AnAppWithoutAnIconGetsThePlatformsStandInAndIsNotAskedAgain) {
    icons_.standInColour = Qt::blue;
    cache_.icon(u"/none"_s, 64);
    queue_.runPosted();
    EXPECT_TRUE(cache_.isKnown(u"/none"_s, 64));
    EXPECT_EQ(arrived_, QStringList{u"/none:64"_s});
    EXPECT_EQ(cache_.icon(u"/none"_s, 64), filled(64, Qt::blue));
    queue_.runPosted();
    EXPECT_EQ(icons_.asked.size(), 1);
    EXPECT_TRUE(cache_.isIdle());
}

TEST_F(IconCacheTest, WithoutAStandInOfThePlatformAnAppWithoutAnIconGetsTheGlyph) {
    cache_.icon(u"/none"_s, 64);
    queue_.runPosted();
    EXPECT_EQ(arrived_, QStringList{u"/none:64"_s});
    EXPECT_EQ(cache_.icon(u"/none"_s, 64), paintedIconGlyph(64));
}

TEST_F(IconCacheTest, NothingButThePlaceholderIsShownUntilItIsKnownThatThereIsNoIcon) {
    icons_.standInColour = Qt::blue;
    icons_.colours.insert(u"/a"_s, Qt::red);
    cache_.icon(u"/none"_s, 64);
    queue_.runPosted();
    EXPECT_EQ(cache_.icon(u"/a"_s, 64), cache_.placeholder(64));
}

TEST_F(IconCacheTest, OneStandInServesAllAppsOfASize) {
    icons_.standInColour = Qt::blue;
    cache_.icon(u"/none"_s, 64);
    cache_.icon(u"/neither"_s, 64);
    queue_.runPosted();
    arrived_.sort();
    EXPECT_EQ(arrived_, (QStringList{u"/neither:64"_s, u"/none:64"_s}));
    EXPECT_EQ(icons_.standInsAsked, 1);
    cache_.icon(u"/nor"_s, 64);
    queue_.runPosted();
    EXPECT_EQ(arrived_.last(), u"/nor:64"_s);
    EXPECT_EQ(icons_.standInsAsked, 1);
    EXPECT_EQ(cache_.icon(u"/nor"_s, 64).cacheKey(), cache_.icon(u"/none"_s, 64).cacheKey());
}

TEST_F(IconCacheTest, AnAppKnownToHaveNoIconHasNoneAtAnotherSizeEither) {
    icons_.standInColour = Qt::blue;
    cache_.icon(u"/none"_s, 64);
    cache_.icon(u"/neither"_s, 48);
    queue_.runPosted();
    EXPECT_EQ(cache_.icon(u"/none"_s, 48), filled(48, Qt::blue));
}

TEST_F(IconCacheTest, AStandInThatHasChangedTakesThePlaceOfTheFormerOne) {
    icons_.standInColour = Qt::blue;
    cache_.icon(u"/none"_s, 64);
    queue_.runPosted();
    arrived_.clear();
    cache_.retryMissing();
    queue_.runPosted();
    EXPECT_TRUE(arrived_.isEmpty());
    icons_.standInColour = Qt::yellow;
    cache_.retryMissing();
    queue_.runPosted();
    EXPECT_EQ(arrived_, QStringList{u"/none:64"_s});
    EXPECT_EQ(cache_.icon(u"/none"_s, 64), filled(64, Qt::yellow));
}

TEST_F(IconCacheTest, AnAppWithoutAnIconIsRememberedAsSuch) {
    icons_.standInColour = Qt::blue;
    cache_.icon(u"/none"_s, 64);
    queue_.runPosted();
    const auto kept = cache_.pictures({u"/none"_s});
    EXPECT_EQ(kept, (std::vector<KeptIcon>{{u"/none"_s, filled(64, Qt::blue), true}}));

    cache_.serveFrom(&icons_, &queue_);
    icons_.asked.clear();
    arrived_.clear();
    cache_.remember(kept);
    EXPECT_EQ(cache_.icon(u"/none"_s, 64), filled(64, Qt::blue));
    queue_.runPosted();
    EXPECT_TRUE(icons_.asked.isEmpty());
    cache_.refreshRemembered();
    queue_.runPosted();
    EXPECT_EQ(icons_.asked, QStringList{u"/none"_s});
    EXPECT_TRUE(arrived_.isEmpty());
    EXPECT_EQ(cache_.pictures({u"/none"_s}), kept);
}

TEST_F(IconCacheTest, ARememberedStandInGivesWayToAnIconAndToANewerStandIn) {
    cache_.remember({{u"/none"_s, filled(64, Qt::blue), true}, {u"/late"_s, filled(64, Qt::blue), true}});
    icons_.colours.insert(u"/late"_s, Qt::green);
    icons_.standInColour = Qt::yellow;
    cache_.refreshRemembered();
    queue_.runPosted();
    EXPECT_EQ(cache_.icon(u"/none"_s, 64), filled(64, Qt::yellow));
    EXPECT_EQ(cache_.icon(u"/late"_s, 64), filled(64, Qt::green));
    EXPECT_TRUE(arrived_.contains(u"/none:64"_s));
    EXPECT_TRUE(arrived_.contains(u"/late:64"_s));
}

TEST_F(IconCacheTest, AnIconThatComesLaterIsFoundWhenAskedAgain) {
    cache_.icon(u"/late"_s, 64);
    queue_.runPosted();
    icons_.colours.insert(u"/late"_s, Qt::green);
    cache_.retryMissing();
    queue_.runPosted();
    EXPECT_EQ(arrived_, (QStringList{u"/late:64"_s, u"/late:64"_s})) << "the stand-in, then the icon";
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

TEST_F(IconCacheTest, ThePicturesOfSomeAppsAreGivenInOrder) {
    icons_.standInColour = Qt::gray;
    icons_.colours = {{u"/a"_s, Qt::red}, {u"/b"_s, Qt::green}, {u"/c"_s, Qt::blue}};
    for (const QString& path : {u"/c"_s, u"/b"_s, u"/a"_s, u"/none"_s}) {
        cache_.icon(path, 64);
        cache_.icon(path, 16);
    }
    queue_.runPosted();
    const std::vector<KeptIcon> expected{
        {u"/a"_s, filled(16, Qt::red)},           {u"/a"_s, filled(64, Qt::red)},
        {u"/c"_s, filled(16, Qt::blue)},          {u"/c"_s, filled(64, Qt::blue)},
        {u"/none"_s, filled(16, Qt::gray), true}, {u"/none"_s, filled(64, Qt::gray), true}};
    EXPECT_EQ(cache_.pictures({u"/c"_s, u"/a"_s, u"/none"_s}), expected);
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

TEST_F(IconCacheTest, ThePlatformRestsOnceNoIconHasBeenUnderWayForAWhile) {
    icons_.colours.insert(u"/a"_s, Qt::red);
    queue_.advance(2 * IconCache::restAfter);
    EXPECT_EQ(icons_.rests, 0) << "nothing was asked for";
    cache_.icon(u"/a"_s, 64);
    cache_.icon(u"/b"_s, 64);
    queue_.advance(IconCache::restAfter - 0.1);
    EXPECT_EQ(icons_.rests, 0);
    cache_.icon(u"/c"_s, 64);
    queue_.advance(IconCache::restAfter - 0.1);
    EXPECT_EQ(icons_.rests, 0) << "a request begins the time anew";
    cache_.icon(u"/a"_s, 64);
    queue_.advance(0.1);
    EXPECT_EQ(icons_.rests, 1) << "what is known is no request";
    queue_.advance(2 * IconCache::restAfter);
    EXPECT_EQ(icons_.rests, 1) << "once";
    cache_.icon(u"/d"_s, 64);
    queue_.advance(IconCache::restAfter);
    EXPECT_EQ(icons_.rests, 2);
}

TEST_F(IconCacheTest, APlatformThatIconsNoLongerComeFromIsNotTouched) {
    cache_.icon(u"/a"_s, 64);
    queue_.runPosted();
    cache_.serveFrom(nullptr, nullptr);
    queue_.advance(2 * IconCache::restAfter);
    EXPECT_EQ(icons_.rests, 0);
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
    bool isThere(int number) const { return cache_.isKnown(path(number), 64); }

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

TEST_F(SmallIconCacheTest, TheIconsAskedForLongestAgoGoWhenThereIsNoRoomForMore) {
    for (const int number : {0, 1, 2}) {
        decode(number);
    }
    decode(0); // is wanted again
    decode(3);
    EXPECT_FALSE(isThere(1));
    EXPECT_TRUE(isThere(0) && isThere(2) && isThere(3));
    for (int number = 0; number < 10; ++number) {
        decode(number);
        EXPECT_LE(cache_.spareBytes(), limit);
    }
}

TEST_F(SmallIconCacheTest, AnIconThatWentIsDecodedAgainWhenItIsAskedFor) {
    for (int number = 0; number < 10; ++number) {
        decode(number);
    }
    ASSERT_FALSE(isThere(0));
    icons_.asked.clear();
    EXPECT_EQ(cache_.icon(path(0), 64), cache_.placeholder(64));
    queue_.runPosted();
    EXPECT_EQ(icons_.asked, QStringList{path(0)});
    EXPECT_EQ(cache_.icon(path(0), 64), filled(64, QColor(0, 0, 0)));
}

TEST_F(SmallIconCacheTest, IconsOfNeededApplicationsStay) {
    cache_.setNeeded({path(0), path(1)});
    for (int number = 0; number < 10; ++number) {
        decode(number);
    }
    EXPECT_TRUE(isThere(0) && isThere(1));
    EXPECT_LE(cache_.spareBytes(), limit) << "and the others are bounded as before";
    cache_.setNeeded({});
    decode(5, 32);
    EXPECT_FALSE(isThere(0) && isThere(1)) << "needed no more";
}

TEST_F(SmallIconCacheTest, OfANeededApplicationOnlyTheSizeAskedForLastStays) {
    cache_.setNeeded({path(0)});
    for (int edge = 40; edge <= 64; ++edge) {
        decode(0, edge);
    }
    EXPECT_FALSE(cache_.isKnown(path(0), 40));
    EXPECT_TRUE(cache_.isKnown(path(0), 64));
    EXPECT_LE(cache_.spareBytes(), limit);
}

TEST_F(SmallIconCacheTest, AnIconThatSomebodyHoldsStaysSinceLettingGoWouldFreeNothing) {
    decode(0);
    {
        const QImage shown = cache_.icon(path(0), 64);
        for (int number = 1; number < 10; ++number) {
            decode(number);
        }
        EXPECT_TRUE(isThere(0));
    }
    decode(1);
    EXPECT_FALSE(isThere(0)) << "nobody holds it any more";
}

TEST_F(SmallIconCacheTest, ApplicationsWithoutAnIconTakeRoomAsWell) {
    for (int number = 100; number < 1000; ++number) {
        decode(number);
    }
    EXPECT_LE(cache_.spareBytes(), limit);
    EXPECT_FALSE(isThere(100));
    EXPECT_TRUE(isThere(999));
}

TEST_F(SmallIconCacheTest, ShrinkingLeavesWhatIsNeededOrHeld) {
    cache_.setNeeded({path(0)});
    for (const int number : {0, 1, 2}) {
        decode(number);
    }
    const QImage shown = cache_.icon(path(1), 64);
    cache_.shrink();
    EXPECT_TRUE(isThere(0) && isThere(1));
    EXPECT_FALSE(isThere(2));
    EXPECT_EQ(cache_.spareBytes(), 0);
}

TEST_F(SmallIconCacheTest, ASizeOfWhichNothingIsLeftStandsInForNoOther) {
    decode(0, 32);
    cache_.shrink();
    EXPECT_EQ(cache_.icon(path(0), 64), cache_.placeholder(64));
}
