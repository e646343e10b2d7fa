#include "model/LayoutStore.h"

#include "data/LayoutCoding.h"
#include "support/ManualQueue.h"
#include "support/MemoryFileSystem.h"

#include <gtest/gtest.h>

using namespace amberquill;
using namespace Qt::StringLiterals;

namespace {

class LayoutStoreTest : public testing::Test {
protected:
    const QString path_ = u"/data/Amberquill/layout.json"_s;
    const LaunchItems one_ = {LaunchItem::app(u"/one.app"_s)};
    const LaunchItems two_ = {LaunchItem::app(u"/two.app"_s)};

    ManualQueue queue_;
    MemoryFileSystem files_;
    LayoutStore store_{queue_, files_, u"/data"_s};
};

} // namespace

TEST_F(LayoutStoreTest, AMissingFileIsAnEmptyLayout) {
    EXPECT_TRUE(store_.load().empty());
    EXPECT_TRUE(files_.paths().isEmpty());
}

TEST_F(LayoutStoreTest, ASavedLayoutIsLoadedAgain) {
    store_.save(one_);
    queue_.runPosted();
    EXPECT_EQ(files_.file(path_), encodeItems(one_));
    EXPECT_EQ(LayoutStore(queue_, files_, u"/data"_s).load(), one_);
}

TEST_F(LayoutStoreTest, TheLastOfSeveralSavesIsOnTheDisk) {
    store_.save(one_);
    store_.save(two_);
    queue_.runPosted();
    EXPECT_EQ(files_.file(path_), encodeItems(two_));
    EXPECT_EQ(files_.writes(), 1) << "the first save is not written";
}

TEST_F(LayoutStoreTest, AFlushWritesAtOnceAndNothingOlderFollows) {
    store_.save(one_);
    store_.save(two_);
    store_.flush();
    EXPECT_EQ(files_.file(path_), encodeItems(two_));
    queue_.runPosted();
    EXPECT_EQ(files_.file(path_), encodeItems(two_));
    EXPECT_EQ(files_.writes(), 1);
}

TEST_F(LayoutStoreTest, TheSameLayoutIsNotWrittenAgain) {
    files_.addFile(path_, encodeItems(one_));
    ASSERT_EQ(store_.load(), one_);
    store_.save(one_);
    queue_.runPosted();
    EXPECT_EQ(files_.writes(), 0);
}

TEST_F(LayoutStoreTest, AFileThatDoesNotDecodeIsSetAsideBeforeTheFirstSave) {
    files_.addFile(path_, "[{\"app\":");
    EXPECT_TRUE(store_.load().empty());
    EXPECT_EQ(files_.file(path_), QByteArray("[{\"app\":"));
    store_.save(one_);
    queue_.runPosted();
    EXPECT_EQ(files_.file(path_), encodeItems(one_));
    EXPECT_EQ(files_.file(path_ + u".unreadable-1"_s), QByteArray("[{\"app\":"));
}

TEST_F(LayoutStoreTest, AFileThatCannotBeReadIsSetAsideToo) {
    files_.addFile(path_, encodeItems(two_));
    files_.makeUnreadable(path_);
    EXPECT_TRUE(store_.load().empty());
    store_.save(one_);
    queue_.runPosted();
    EXPECT_EQ(files_.file(path_ + u".unreadable-1"_s), encodeItems(two_));
}

TEST_F(LayoutStoreTest, AFileThatDoesNotDecodeAndCannotBeSetAsideIsNotWrittenOver) {
    files_.addFile(path_, "[{\"app\":");
    files_.refuseSettingAside(true);
    EXPECT_TRUE(store_.load().empty());
    store_.save(one_);
    store_.flush();
    store_.save(two_);
    queue_.advance(3600);
    EXPECT_EQ(files_.file(path_), QByteArray("[{\"app\":"));
}

TEST_F(LayoutStoreTest, AnUnwritableFolderIsTriedAgainWithoutAnotherSave) {
    files_.refuseWrites(true);
    store_.save(one_);
    queue_.runPosted();
    files_.refuseWrites(false);
    queue_.advance(1);
    EXPECT_EQ(files_.file(path_), encodeItems(one_));
}

TEST_F(LayoutStoreTest, AnUnwritableFolderIsSilentAndTriedAgainAtTheNextSave) {
    files_.refuseWrites(true);
    store_.save(one_);
    queue_.runPosted();
    EXPECT_EQ(files_.file(path_), std::nullopt);
    files_.refuseWrites(false);
    store_.save(one_);
    queue_.runPosted();
    EXPECT_EQ(files_.file(path_), encodeItems(one_));
}

TEST_F(LayoutStoreTest, PlacesAreWrittenBeforeALayoutThatIsSavedAfterThem) {
    store_.save(one_); // requests a write, which then takes the newest layout
    store_.savePlaces({{.id = u"/one.app"_s}});
    store_.save(two_);
    files_.failWritesAfter(1);
    queue_.runPosted();
    EXPECT_EQ(files_.writesOf(u"/data/Amberquill/places.json"_s), 1);
    EXPECT_EQ(files_.writesOf(path_), 0);
}

TEST_F(LayoutStoreTest, AFileThatOthersDeletedOrChangedIsWrittenAgain) {
    store_.save(one_);
    store_.flush();
    ASSERT_TRUE(files_.remove(path_));
    store_.save(one_);
    store_.flush();
    EXPECT_EQ(files_.file(path_), encodeItems(one_));
    files_.addFile(path_, "{");
    store_.save(one_);
    store_.flush();
    EXPECT_EQ(files_.file(path_), encodeItems(one_));
}
