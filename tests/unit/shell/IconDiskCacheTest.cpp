#include "shell/IconDiskCache.h"

#include "data/IconCache.h"
#include "support/ModelFixture.h"
#include "support/PlatformFakes.h"

using namespace amberquill;
using namespace Qt::StringLiterals;

namespace {

class IconDiskCacheTest : public ModelFixture {
protected:
    void SetUp() override {
        ModelFixture::SetUp();
        files_.addFile(layoutPath,
                       encodeItems({LaunchItem::app(path(1)),
                                    LaunchItem::folder({QUuid::createUuid(), u"F"_s, {path(2)}})}));
        makeModel();
        cache_.serveFrom(&icons_, &queue_);
    }

    void makeDiskCache() {
        const auto loaded = IconDiskCache::load(files_, u"/cache"_s);
        cache_.restore(loaded);
        diskCache_ = std::make_unique<IconDiskCache>(IconDiskCache::Services{*model_, cache_, queue_, files_},
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
    std::unique_ptr<IconDiskCache> diskCache_;
};

} // namespace

TEST_F(IconDiskCacheTest, TheNextStartHasTheFirstPagesIcons) {
    makeDiskCache();
    decode(path(1), 64);
    decode(path(2), 16);
    decode(path(3), 64);
    diskCache_->start();
    queue_.runPosted();
    const auto kept = IconDiskCache::load(files_, u"/cache"_s);
    ASSERT_EQ(kept.size(), 2U) << "not those of other pages";
    EXPECT_EQ(kept[0].path, path(1));
    EXPECT_EQ(kept[0].image, cache_.icon(path(1), 64));
    EXPECT_EQ(kept[1].path, path(2)) << "icons in folders too";
    EXPECT_EQ(kept[1].image.width(), 16);
}

TEST_F(IconDiskCacheTest, IconsAreWrittenOnlyWhenTheyHaveChanged) {
    makeDiskCache();
    decode(path(1), 64);
    diskCache_->start();
    queue_.runPosted();
    const int writes = files_.writes();
    hide();
    EXPECT_EQ(files_.writes(), writes);
    decode(path(1), 80);
    hide();
    EXPECT_EQ(files_.writes(), writes + 1);
    EXPECT_EQ(IconDiskCache::load(files_, u"/cache"_s).size(), 2U);

    cache_.serveFrom(&icons_, &queue_); // as in another process
    makeDiskCache();
    diskCache_->start();
    hide();
    EXPECT_EQ(files_.writes(), writes + 1) << "the file holds the loaded icons already";
}

TEST_F(IconDiskCacheTest, UnchangedGenericIconsAreNotWrittenAgain) {
    NoIcons none;
    cache_.serveFrom(&none, &queue_);
    makeDiskCache();
    decode(path(1), 64);
    decode(path(2), 64);
    diskCache_->start();
    queue_.runPosted();
    const int writes = files_.writes();

    cache_.serveFrom(&none, &queue_); // as in another process
    makeDiskCache();
    diskCache_->start();
    cache_.refreshRestored();
    queue_.runPosted();
    hide();
    EXPECT_EQ(files_.writes(), writes);
}

TEST_F(IconDiskCacheTest, TheGenericIconOfAnotherApplicationIsWritten) {
    NoIcons none;
    cache_.serveFrom(&none, &queue_);
    makeDiskCache();
    decode(path(1), 64);
    diskCache_->start();
    queue_.runPosted();
    cache_.shrink();
    decode(path(2), 64);
    hide();
    const auto kept = IconDiskCache::load(files_, u"/cache"_s);
    ASSERT_EQ(kept.size(), 1U);
    EXPECT_EQ(kept[0].path, path(2));
}

TEST_F(IconDiskCacheTest, TheFirstPageIsReadyOnceItsIconsAreDecoded) {
    EXPECT_FALSE(IconDiskCache::prepareFirstPage(*model_, cache_, 64));
    queue_.runPosted();
    EXPECT_TRUE(cache_.isKnown(path(1), 64)) << "missing icons have been requested";
    EXPECT_TRUE(IconDiskCache::prepareFirstPage(*model_, cache_, 64));
    EXPECT_FALSE(IconDiskCache::prepareFirstPage(*model_, cache_, 128));
}

TEST_F(IconDiskCacheTest, WithoutAFileThereAreNoIcons) {
    EXPECT_TRUE(IconDiskCache::load(files_, u"/cache"_s).empty());
}
