#include "shell/IconKeeper.h"

#include "data/IconCache.h"
#include "support/ModelFixture.h"
#include "support/PlatformFakes.h"

using namespace amberquill;
using namespace Qt::StringLiterals;

namespace {

class IconKeeperTest : public ModelFixture {
protected:
    void SetUp() override {
        ModelFixture::SetUp();
        files_.addFile(layoutPath,
                       encodeItems({LaunchItem::app(path(1)),
                                    LaunchItem::folder({QUuid::createUuid(), u"F"_s, {path(2)}})}));
        makeModel();
        cache_.serveFrom(&icons_, &queue_);
    }

    void makeKeeper() {
        const auto loaded = IconKeeper::load(files_, u"/cache"_s);
        cache_.remember(loaded);
        keeper_ = std::make_unique<IconKeeper>(IconKeeper::Services{*model_, cache_, queue_, files_},
                                               u"/cache"_s, loaded);
    }

    void decode(const QString& path, int edge) {
        cache_.icon(path, edge);
        queue_.runPosted();
    }

    void hide() {
        model_->setPresented(true);
        model_->setPresented(false);
        queue_.runPosted();
    }

    ColourIcons icons_;
    IconCache cache_;
    std::unique_ptr<IconKeeper> keeper_;
};

} // namespace

TEST_F(IconKeeperTest, TheFirstPagesIconsAreThereAtTheNextStart) {
    makeKeeper();
    decode(path(1), 64);
    decode(path(2), 16);
    decode(path(3), 64);
    keeper_->start();
    queue_.runPosted();
    const auto kept = IconKeeper::load(files_, u"/cache"_s);
    ASSERT_EQ(kept.size(), 2U) << "those of other pages are not";
    EXPECT_EQ(kept[0].path, path(1));
    EXPECT_EQ(kept[0].image, cache_.icon(path(1), 64));
    EXPECT_EQ(kept[1].path, path(2)) << "nor is a folder's forgotten";
    EXPECT_EQ(kept[1].image.width(), 16);
}

TEST_F(IconKeeperTest, TheyAreWrittenAgainOnlyWhenTheyChanged) {
    makeKeeper();
    decode(path(1), 64);
    keeper_->start();
    queue_.runPosted();
    const int writes = files_.writes();
    hide();
    EXPECT_EQ(files_.writes(), writes);
    decode(path(1), 80);
    hide();
    EXPECT_EQ(files_.writes(), writes + 1);
    EXPECT_EQ(IconKeeper::load(files_, u"/cache"_s).size(), 2U);

    cache_.serveFrom(&icons_, &queue_); // as another process begins
    makeKeeper();
    keeper_->start();
    hide();
    EXPECT_EQ(files_.writes(), writes + 1) << "what was loaded is what the file holds";
}

TEST_F(IconKeeperTest, WhatStandsInForIconsIsNotWrittenAgainEither) {
    NullApplicationIcons none;
    cache_.serveFrom(&none, &queue_);
    makeKeeper();
    decode(path(1), 64);
    decode(path(2), 64);
    keeper_->start();
    queue_.runPosted();
    const int writes = files_.writes();

    cache_.serveFrom(&none, &queue_); // as another process begins
    makeKeeper();
    keeper_->start();
    cache_.refreshRemembered();
    queue_.runPosted();
    hide();
    EXPECT_EQ(files_.writes(), writes);
}

TEST_F(IconKeeperTest, WhatStandsInForIconsIsWrittenForAnotherApplication) {
    NullApplicationIcons none;
    cache_.serveFrom(&none, &queue_);
    makeKeeper();
    decode(path(1), 64);
    keeper_->start();
    queue_.runPosted();
    cache_.shrink();
    decode(path(2), 64);
    hide();
    const auto kept = IconKeeper::load(files_, u"/cache"_s);
    ASSERT_EQ(kept.size(), 1U);
    EXPECT_EQ(kept[0].path, path(2));
}

TEST_F(IconKeeperTest, AFirstPageIsReadyWhenNothingOfItMustBeDecoded) {
    EXPECT_FALSE(IconKeeper::prepareFirstPage(*model_, cache_, 64));
    queue_.runPosted();
    EXPECT_TRUE(cache_.isKnown(path(1), 64)) << "what was missing has been asked for";
    EXPECT_TRUE(IconKeeper::prepareFirstPage(*model_, cache_, 64));
    EXPECT_FALSE(IconKeeper::prepareFirstPage(*model_, cache_, 128));
}

TEST_F(IconKeeperTest, NoFileMeansNoIcons) {
    EXPECT_TRUE(IconKeeper::load(files_, u"/cache"_s).empty());
}
