#include "platform/linux/files/WatchWalk.h"

#include "support/FaultySystemCalls.h"
#include "support/TemporaryTree.h"

#include <fcntl.h>
#include <gtest/gtest.h>
#include <sys/inotify.h>
#include <sys/stat.h>

using namespace amberquill;
using namespace amberquill::desktop;

namespace {

class WatchFolders : public testing::Test {
protected:
    [[nodiscard]] WatchedFolders walk(const std::vector<std::string>& roots) const {
        QByteArrayList paths;
        for (const std::string& root : roots) {
            paths.append(QByteArray::fromStdString(tree_.at(root).string()));
        }
        return watchFolders(inotify_, paths, since_);
    }

    // The number of watched folders at or below the roots.
    [[nodiscard]] static std::ptrdiff_t belowRoots(const WatchedFolders& found) {
        return std::count_if(found.byWatch.begin(), found.byWatch.end(),
                             [](const auto& watched) { return watched.second.belowRoot; });
    }

    // All awaited names.
    [[nodiscard]] static std::set<QByteArray> awaited(const WatchedFolders& found) {
        std::set<QByteArray> names;
        for (const auto& [watch, folder] : found.byWatch) {
            names.insert(folder.awaited.begin(), folder.awaited.end());
        }
        return names;
    }

    TemporaryTree tree_;
    FileDescriptor inotify_{::inotify_init1(IN_NONBLOCK | IN_CLOEXEC)};
    timespec since_ = {.tv_sec = 1LL << 40, .tv_nsec = 0};
};

} // namespace

TEST_F(WatchFolders, SubFoldersAreWatchedToADepthOfFive) {
    tree_.makeFolder("root/1/2/3/4/5/6/7");
    EXPECT_EQ(belowRoots(walk({"root"})), 6);
}

TEST_F(WatchFolders, ARootBelowARootIsWatchedToItsOwnDepth) {
    tree_.makeFolder("root/1/2/3/4/5/6/7");
    EXPECT_EQ(belowRoots(walk({"root", "root/1/2/3"})), 8);
}

TEST_F(WatchFolders, LinksBelowARootAreNotFollowed) {
    tree_.makeFolder("elsewhere/deep");
    tree_.makeFolder("root/own");
    tree_.link("root/link", tree_.at("elsewhere"));
    tree_.link("root/own/loop", "..");
    EXPECT_EQ(belowRoots(walk({"root"})), 2);
}

TEST_F(WatchFolders, WithoutEntryTypesFoldersAreEnteredAndLinksAreNot) {
    tree_.makeFolder("elsewhere/deep");
    tree_.makeFolder("root/own");
    tree_.write("root/file", {});
    tree_.link("root/link", tree_.at("elsewhere"));
    const UnknownEntryTypes types;
    EXPECT_EQ(belowRoots(walk({"root"})), 2);
}

TEST_F(WatchFolders, ARootThatIsALinkIsFollowedAndItsNameAwaited) {
    tree_.makeFolder("real/sub");
    tree_.link("second", "real");
    tree_.link("first", tree_.at("second"));
    const WatchedFolders found = walk({"first"});
    EXPECT_EQ(belowRoots(found), 2);
    EXPECT_EQ(awaited(found), (std::set<QByteArray>{"first", "second"}));
    EXPECT_EQ(found.roots, walk({"real"}).roots);
}

TEST_F(WatchFolders, AMissingRootIsAwaitedInTheNearestFolderThatExists) {
    tree_.makeFolder("a/b");
    const WatchedFolders found = walk({"a/b/c/d"});
    EXPECT_EQ(belowRoots(found), 0);
    EXPECT_EQ(found.byWatch.size(), 1U);
    EXPECT_EQ(awaited(found), std::set<QByteArray>{"c"});
    EXPECT_EQ(found.roots, std::vector<FolderIdentity>{{}});
}

TEST_F(WatchFolders, ADanglingLinkIsAwaitedWhereItPointsTo) {
    tree_.makeFolder("target");
    tree_.link("root", "target/folder");
    EXPECT_EQ(awaited(walk({"root"})), (std::set<QByteArray>{"root", "folder"}));
}

TEST_F(WatchFolders, AFileInAFoldersPlaceIsWatchedUntilItIsAFolder) {
    tree_.write("file", {});
    const WatchedFolders found = walk({"file/below", "file"});
    EXPECT_EQ(awaited(found), std::set<QByteArray>{"file"});
    EXPECT_EQ(belowRoots(found), 0);
}

TEST_F(WatchFolders, LinkCyclesAreGivenUp) {
    tree_.link("one", "two");
    tree_.link("two", "one");
    EXPECT_EQ(awaited(walk({"one"})), (std::set<QByteArray>{"one", "two"}));
}

TEST_F(WatchFolders, AHugeRootLeavesWatchesForTheOthers) {
    for (std::size_t number = 0; number < maximumWatches + 10; ++number) {
        tree_.makeFolder("huge/" + std::to_string(number));
    }
    tree_.makeFolder("small");
    const WatchedFolders found = walk({"huge", "small"});
    EXPECT_LE(found.byWatch.size(), maximumWatches);
    EXPECT_GT(found.byWatch.size(), maximumWatches - 10);
    struct stat status = {};
    ASSERT_EQ(::stat(tree_.at("small").c_str(), &status), 0);
    EXPECT_EQ(found.roots.at(1), (FolderIdentity{status.st_dev, status.st_ino}));
    // A watched inode keeps its watch.
    const int watch = ::inotify_add_watch(inotify_.get(), tree_.at("small").c_str(), IN_CREATE | IN_MASK_ADD);
    ASSERT_TRUE(found.byWatch.contains(watch));
    EXPECT_TRUE(found.byWatch.at(watch).belowRoot);
}

TEST_F(WatchFolders, AChangeAfterTheStartIsReportedAndAnEarlierOneIsNot) {
    tree_.makeFolder("root/sub");
    EXPECT_FALSE(walk({"root"}).modifiedMeanwhile);
    since_ = {.tv_sec = 4'000'000'000, .tv_nsec = 500};
    const std::array<timespec, 2> same = {since_, since_};
    ASSERT_EQ(::utimensat(AT_FDCWD, tree_.at("root/sub").c_str(), same.data(), 0), 0);
    EXPECT_FALSE(walk({"root"}).modifiedMeanwhile);
    since_.tv_nsec = 499;
    EXPECT_TRUE(walk({"root"}).modifiedMeanwhile);
}

TEST_F(WatchFolders, AllRootsThatCannotBeWatchedAreReturned) {
    const WatchedFolders found =
        watchFolders(FileDescriptor(), {QByteArray(tree_.path().toUtf8()), "/missing"}, since_);
    EXPECT_EQ(found.roots.size(), 2U);
    EXPECT_TRUE(found.byWatch.empty());
}
