#include "platform/linux/files/InotifyFolderWatcher.h"

#include "support/ManualQueue.h"
#include "support/OrdinaryUser.h"
#include "support/TemporaryTree.h"

#include <QCoreApplication>
#include <fcntl.h>
#include <gtest/gtest.h>
#include <sys/stat.h>

using namespace amberquill;
using namespace amberquill::desktop;
namespace fs = std::filesystem;

namespace {

constexpr double quiet = InotifyFolderWatcher::quietSeconds;
constexpr double patience = InotifyFolderWatcher::patienceSeconds;

// The number of inotify watches of this process.
std::ptrdiff_t watchesOfThisProcess() {
    std::ptrdiff_t watches = 0;
    for (const auto& descriptor : fs::directory_iterator("/proc/self/fdinfo")) {
        std::ifstream info(descriptor.path());
        for (std::string line; std::getline(info, line);) {
            watches += line.starts_with("inotify ") ? 1 : 0;
        }
    }
    return watches;
}

class InotifyFolderWatcherTest : public testing::Test {
protected:
    void watch(const std::vector<std::string>& roots) {
        QStringList folders;
        for (const std::string& root : roots) {
            folders.append(QString::fromStdString(tree_.at(root).string()));
        }
        watcher_->watch(folders, [this] { ++calls_; });
        queue_.runPosted(); // the walk
        ASSERT_EQ(calls_, 0);
    }

    // The kernel queues events before a file call returns, so one read takes them all.
    static void deliver() { QCoreApplication::processEvents(); }

    // The number of calls of `changed` after a pause.
    int callsAfterQuiet() {
        deliver();
        queue_.advance(quiet);
        return std::exchange(calls_, 0);
    }

    TemporaryTree tree_;
    ManualQueue queue_;
    std::unique_ptr<InotifyFolderWatcher> watcher_ = std::make_unique<InotifyFolderWatcher>(queue_);
    int calls_ = 0;
};

} // namespace

TEST_F(InotifyFolderWatcherTest, EveryKindOfChangeIsReported) {
    tree_.write("root/old", "content");
    tree_.write("outside", "content");
    watch({"root"});
    tree_.write("root/new", "content");
    EXPECT_EQ(callsAfterQuiet(), 1) << "made";
    tree_.write("root/old", "other");
    EXPECT_EQ(callsAfterQuiet(), 1) << "written";
    fs::permissions(tree_.at("root/old"), fs::perms{0600});
    EXPECT_EQ(callsAfterQuiet(), 1) << "mode changed";
    fs::rename(tree_.at("root/old"), tree_.at("root/renamed"));
    EXPECT_EQ(callsAfterQuiet(), 1) << "renamed";
    fs::rename(tree_.at("root/renamed"), tree_.at("away"));
    EXPECT_EQ(callsAfterQuiet(), 1) << "moved away";
    fs::rename(tree_.at("outside"), tree_.at("root/come"));
    EXPECT_EQ(callsAfterQuiet(), 1) << "moved in";
    tree_.remove("root/come");
    EXPECT_EQ(callsAfterQuiet(), 1) << "removed";
    tree_.link("root/link", "missing");
    EXPECT_EQ(callsAfterQuiet(), 1) << "linked";
}

TEST_F(InotifyFolderWatcherTest, ReadingIsNotAChangeAndWakesNothing) {
    tree_.write("root/sub/file", "content");
    watch({"root"});
    EXPECT_EQ(tree_.read("root/sub/file"), "content");
    EXPECT_TRUE(fs::directory_iterator(tree_.at("root/sub")) != fs::directory_iterator());
    deliver();
    EXPECT_EQ(queue_.waiting(), 0U);
}

TEST_F(InotifyFolderWatcherTest, WithoutChangesNoWorkIsScheduled) {
    tree_.makeFolder("root");
    watch({"root"});
    EXPECT_EQ(queue_.waiting(), 0U);
    tree_.write("root/file", {});
    EXPECT_EQ(callsAfterQuiet(), 1);
    EXPECT_EQ(queue_.waiting(), 0U);
}

TEST_F(InotifyFolderWatcherTest, ChangesAreReportedOnceTheyPause) {
    tree_.makeFolder("root");
    watch({"root"});
    tree_.write("root/one", {});
    deliver();
    queue_.advance(quiet - 0.001);
    EXPECT_EQ(calls_, 0);
    tree_.write("root/two", {});
    deliver();
    queue_.advance(quiet - 0.001);
    EXPECT_EQ(calls_, 0);
    queue_.advance(0.001);
    EXPECT_EQ(calls_, 1);
    queue_.advance(60);
    EXPECT_EQ(calls_, 1);
}

TEST_F(InotifyFolderWatcherTest, ContinuousChangesAreReportedEveryFiveSeconds) {
    tree_.makeFolder("root");
    watch({"root"});
    std::vector<double> told;
    const double start = queue_.now();
    for (int step = 0; step < 60; ++step) {
        tree_.write("root/busy", {});
        deliver();
        queue_.advance(0.2);
        if (std::exchange(calls_, 0) != 0) {
            told.push_back(queue_.now() - start);
        }
    }
    ASSERT_EQ(told.size(), 2U);
    EXPECT_NEAR(told[0], patience, 0.001);
    EXPECT_NEAR(told[1], 2 * patience, 0.2001); // counted from the change after the first report
    queue_.advance(quiet);
    EXPECT_EQ(calls_, 1);
}

TEST_F(InotifyFolderWatcherTest, ContinuousNewFoldersAreReportedToo) {
    tree_.makeFolder("root");
    watch({"root"});
    int told = 0;
    for (int step = 0; step < 60; ++step) {
        tree_.makeFolder("root/folder" + std::to_string(step));
        deliver();
        queue_.advance(0.2);
        told += std::exchange(calls_, 0);
    }
    EXPECT_GE(told, 2);
}

TEST_F(InotifyFolderWatcherTest, ManyChangesScheduleOnePieceOfWork) {
    tree_.makeFolder("root");
    watch({"root"});
    for (int number = 0; number < 100; ++number) {
        tree_.write("root/" + std::to_string(number), {});
        deliver();
    }
    EXPECT_EQ(queue_.waiting(), 1U);
    EXPECT_EQ(callsAfterQuiet(), 1);
}

TEST_F(InotifyFolderWatcherTest, SubFoldersAreWatched) {
    tree_.makeFolder("root/1/2/3/4/5/6");
    watch({"root"});
    tree_.write("root/1/2/3/4/5/file", {});
    EXPECT_EQ(callsAfterQuiet(), 1);
    tree_.write("root/1/2/3/4/5/6/file", {});
    EXPECT_EQ(callsAfterQuiet(), 0);
}

TEST_F(InotifyFolderWatcherTest, NewSubFoldersAreWatched) {
    tree_.makeFolder("root");
    watch({"root"});
    tree_.makeFolder("root/new/deep");
    EXPECT_EQ(callsAfterQuiet(), 1);
    tree_.write("root/new/deep/file", {});
    EXPECT_EQ(callsAfterQuiet(), 1);
}

TEST_F(InotifyFolderWatcherTest, AFolderMovedInIsWatchedAndOneMovedAwayIsNot) {
    tree_.makeFolder("root");
    tree_.makeFolder("outside/deep");
    watch({"root"});
    fs::rename(tree_.at("outside"), tree_.at("root/inside"));
    EXPECT_EQ(callsAfterQuiet(), 1);
    tree_.write("root/inside/deep/file", {});
    EXPECT_EQ(callsAfterQuiet(), 1);
    fs::rename(tree_.at("root/inside"), tree_.at("outside"));
    EXPECT_EQ(callsAfterQuiet(), 1);
    tree_.write("outside/deep/file", "again");
    EXPECT_EQ(callsAfterQuiet(), 0);
}

TEST_F(InotifyFolderWatcherTest, NoWatchIsKeptOfAFolderThatWasMovedAway) {
    tree_.makeFolder("root/sub/deep");
    watch({"root"});
    EXPECT_EQ(watchesOfThisProcess(), 3);
    fs::rename(tree_.at("root/sub"), tree_.at("outside"));
    EXPECT_EQ(callsAfterQuiet(), 1);
    EXPECT_EQ(watchesOfThisProcess(), 1);
}

TEST_F(InotifyFolderWatcherTest, AFolderCreatedDuringAWalkIsReportedAgainOnceItIsWatched) {
    tree_.makeFolder("root");
    watch({"root"});
    tree_.makeFolder("root/one");
    deliver();
    // Created between the end of the pause and the walk that follows it.
    const DelayedWork later = queue_.postAfter(quiet, [this] {
        tree_.makeFolder("root/two");
        deliver();
    });
    queue_.advance(quiet);
    EXPECT_EQ(calls_, 1);
    queue_.advance(quiet);
    EXPECT_EQ(calls_, 2);
    queue_.advance(60);
    EXPECT_EQ(calls_, 2);
}

TEST_F(InotifyFolderWatcherTest, FilesCreatedBeforeANewFolderIsWatchedExistWhenItIsReported) {
    tree_.makeFolder("root");
    QStringList seen;
    watcher_->watch({tree_.path("root")}, [&] {
        seen.clear();
        for (const auto& entry : fs::recursive_directory_iterator(tree_.at("root"))) {
            seen.append(QString::fromStdString(entry.path().filename().string()));
        }
    });
    queue_.runPosted();
    tree_.makeFolder("root/new");
    deliver();
    queue_.advance(quiet / 2);
    tree_.write("root/new/unseen", {}); // not watched yet
    deliver();
    queue_.advance(quiet / 2);
    EXPECT_TRUE(seen.contains(QStringLiteral("unseen")));
}

TEST_F(InotifyFolderWatcherTest, ARootThatIsRemovedAndMadeAgainIsWatchedAgain) {
    tree_.write("parent/root/file", {});
    watch({"parent/root"});
    tree_.remove("parent");
    EXPECT_EQ(callsAfterQuiet(), 1);
    tree_.makeFolder("parent");
    EXPECT_EQ(callsAfterQuiet(), 0) << "the root is not there yet";
    tree_.makeFolder("parent/root");
    EXPECT_EQ(callsAfterQuiet(), 1);
    tree_.write("parent/root/file", {});
    EXPECT_EQ(callsAfterQuiet(), 1);
}

TEST_F(InotifyFolderWatcherTest, AMissingRootIsFoundOnceItsParentsAreCreated) {
    watch({"a/b/c"});
    tree_.makeFolder("a");
    EXPECT_EQ(callsAfterQuiet(), 0);
    tree_.makeFolder("a/b");
    EXPECT_EQ(callsAfterQuiet(), 0);
    tree_.write("a/b/c/file", {});
    EXPECT_EQ(callsAfterQuiet(), 1);
    tree_.write("a/b/c/file", "more");
    EXPECT_EQ(callsAfterQuiet(), 1);
}

TEST_F(InotifyFolderWatcherTest, AMissingRootCreatedWithItsParentsAtOnceIsReported) {
    watch({"a/b/c"});
    tree_.write("a/b/c/file", {});
    EXPECT_EQ(callsAfterQuiet(), 1);
}

TEST_F(InotifyFolderWatcherTest, OtherNamesBesideAMissingRootWakeNothing) {
    watch({"missing"});
    tree_.write("other", {});
    deliver();
    EXPECT_EQ(queue_.waiting(), 0U);
}

TEST_F(InotifyFolderWatcherTest, ARootThatIsALinkIsWatchedAndSoIsTheLink) {
    tree_.makeFolder("one");
    tree_.write("two/file", {});
    tree_.link("root", "one");
    watch({"root"});
    tree_.write("one/file", {});
    EXPECT_EQ(callsAfterQuiet(), 1);
    tree_.link("root.new", "two");
    fs::rename(tree_.at("root.new"), tree_.at("root"));
    EXPECT_EQ(callsAfterQuiet(), 1) << "the link leads elsewhere";
    tree_.write("two/file", "more");
    EXPECT_EQ(callsAfterQuiet(), 1);
    tree_.write("one/file", "more");
    EXPECT_EQ(callsAfterQuiet(), 0);
}

TEST_F(InotifyFolderWatcherTest, ALinkInsideARootsPathIsWatchedToo) {
    tree_.makeFolder("profile-1/share");
    tree_.makeFolder("profile-2/share");
    tree_.link("profile", "profile-1");
    watch({"profile/share"});
    tree_.link("profile.new", "profile-2");
    fs::rename(tree_.at("profile.new"), tree_.at("profile"));
    EXPECT_EQ(callsAfterQuiet(), 1);
    tree_.write("profile-2/share/file", {});
    EXPECT_EQ(callsAfterQuiet(), 1);
}

TEST_F(InotifyFolderWatcherTest, LinksBelowARootAreNotFollowed) {
    tree_.makeFolder("elsewhere");
    tree_.makeFolder("root");
    tree_.link("root/link", tree_.at("elsewhere"));
    watch({"root"});
    tree_.write("elsewhere/file", {});
    EXPECT_EQ(callsAfterQuiet(), 0);
}

TEST_F(InotifyFolderWatcherTest, ChangesInSeveralRootsAreReportedOnce) {
    tree_.makeFolder("one");
    tree_.makeFolder("two");
    watch({"one", "two", "missing"});
    tree_.write("one/file", {});
    tree_.write("two/file", {});
    EXPECT_EQ(callsAfterQuiet(), 1);
    tree_.write("two/file", "more");
    EXPECT_EQ(callsAfterQuiet(), 1);
}

TEST_F(InotifyFolderWatcherTest, LostEventsCountAsAChangeAndTheWatchesAreRepaired) {
    tree_.makeFolder("root");
    watch({"root"});
    QByteArray most;
    {
        QFile setting(QStringLiteral("/proc/sys/fs/inotify/max_queued_events"));
        ASSERT_TRUE(setting.open(QIODevice::ReadOnly));
        most = setting.readAll().trimmed();
    }
    // Two names in turn: events that repeat the one before are not queued again.
    const std::array<fs::path, 2> names = {tree_.at("root/a"), tree_.at("root/b")};
    for (int event = 0; event < most.toInt() + 10; ++event) {
        const int file =
            ::open(names.at(static_cast<std::size_t>(event % 2)).c_str(), O_WRONLY | O_CREAT, 0600);
        ASSERT_GE(file, 0);
        ::close(file);
    }
    tree_.makeFolder("root/lost"); // without a report
    for (int look = 0; look < 100; ++look) {
        deliver();
    }
    EXPECT_EQ(callsAfterQuiet(), 1);
    tree_.write("root/lost/file", {});
    EXPECT_EQ(callsAfterQuiet(), 1);
}

TEST_F(InotifyFolderWatcherTest, AChangeDuringTheWalkIsReported) {
    tree_.makeFolder("root/sub");
    watcher_->watch({tree_.path("root")}, [this] { ++calls_; });
    // The walk has not begun; the folder's modification time shows the change.
    const timespec later = {.tv_sec = 4'000'000'000, .tv_nsec = 0};
    const std::array<timespec, 2> times = {later, later};
    ASSERT_EQ(::utimensat(AT_FDCWD, tree_.at("root/sub").c_str(), times.data(), 0), 0);
    queue_.runPosted();
    EXPECT_EQ(callsAfterQuiet(), 1);
    queue_.advance(60);
    EXPECT_EQ(calls_, 0);
}

TEST_F(InotifyFolderWatcherTest, WatchingOtherFoldersEndsTheEarlierWatch) {
    tree_.makeFolder("one");
    tree_.makeFolder("two");
    int former = 0;
    watcher_->watch({tree_.path("one")}, [&] { ++former; });
    queue_.runPosted();
    tree_.write("one/file", {});
    deliver();
    watch({"two"}); // while the first watch waits for a pause
    tree_.write("one/file", "more");
    EXPECT_EQ(callsAfterQuiet(), 0);
    EXPECT_EQ(former, 0);
    tree_.write("two/file", {});
    EXPECT_EQ(callsAfterQuiet(), 1);
}

TEST_F(InotifyFolderWatcherTest, ChangedMayWatchSomethingElse) {
    tree_.makeFolder("one");
    tree_.makeFolder("two");
    int second = 0;
    watcher_->watch({tree_.path("one")}, [&] { watcher_->watch({tree_.path("two")}, [&] { ++second; }); });
    queue_.runPosted();
    tree_.write("one/file", {});
    EXPECT_EQ(callsAfterQuiet(), 0);
    queue_.runPosted();
    tree_.write("two/file", {});
    EXPECT_EQ(callsAfterQuiet(), 0);
    EXPECT_EQ(second, 1);
}

TEST_F(InotifyFolderWatcherTest, NothingIsReportedAfterDestruction) {
    tree_.makeFolder("root");
    watch({"root"});
    tree_.makeFolder("root/new");
    deliver();
    watcher_.reset();
    queue_.advance(60);
    EXPECT_EQ(calls_, 0);
}

TEST_F(InotifyFolderWatcherTest, TheWatcherMayBeDestroyedDuringTheWalk) {
    tree_.makeFolder("root");
    watcher_->watch({tree_.path("root")}, [this] { ++calls_; });
    watcher_.reset();
    queue_.advance(60);
    EXPECT_EQ(calls_, 0);
}

TEST_F(InotifyFolderWatcherTest, AnUnreadableFolderDoesNotPreventWatchingTheOthers) {
    fs::permissions(tree_.at(), fs::perms{0755});
    tree_.makeFolder("locked/inner");
    tree_.makeFolder("root");
    fs::permissions(tree_.at("locked"), fs::perms{0000});
    {
        const OrdinaryUser user;
        watch({"locked/inner", "locked", "root"});
    }
    tree_.write("root/file", {});
    EXPECT_EQ(callsAfterQuiet(), 1);
    fs::permissions(tree_.at("locked"), fs::perms{0755});
}
