#include "data/LayoutCoding.h"
#include "model/LauncherModel.h"
#include "model/LayoutStore.h"
#include "platform/linux/files/PosixFileSystem.h"
#include "support/ManualQueue.h"
#include "support/MemoryPreferences.h"
#include "support/OrdinaryUser.h"
#include "support/TemporaryTree.h"

#include <chrono>
#include <csignal>
#include <gtest/gtest.h>
#include <random>
#include <sys/resource.h>
#include <sys/wait.h>
#include <unistd.h>

using namespace amberquill;
using namespace amberquill::desktop;
using namespace Qt::StringLiterals;

namespace {

LaunchItems layoutOf(int count, const QString& folder) {
    LaunchItems items;
    for (int i = 0; i < count; ++i) {
        items.push_back(LaunchItem::app(u"%1/Application %2.app"_s.arg(folder).arg(i)));
    }
    return items;
}

class LayoutSaving : public testing::Test {
protected:
    [[nodiscard]] LaunchItems onDisk() {
        const auto decoded = decodeItems(tree_.read("Amberquill/layout.json"));
        const auto* items = std::get_if<LaunchItems>(&decoded);
        EXPECT_NE(items, nullptr);
        return items != nullptr ? *items : LaunchItems{};
    }

    // A model over the real files that has laid out `count` applications and saved them.
    LauncherModel& modelWith(int count) {
        model_ = std::make_unique<LauncherModel>(LauncherModel::Services{
            queue_, files_, preferences_, tree_.path(), [] { return std::vector<AppInfo>(); }, {}, {}});
        std::vector<AppInfo> installed;
        for (int i = 0; i < count; ++i) {
            installed.push_back({u"/Applications/%1.app"_s.arg(i), u"App %1"_s.arg(i)});
        }
        model_->applyScan(installed);
        model_->flushSaves();
        return *model_;
    }

    TemporaryTree tree_;
    ManualQueue queue_;
    PosixFileSystem files_;
    MemoryPreferences preferences_;
    std::unique_ptr<LauncherModel> model_;
};

// While it lives, no file may grow beyond `bytes`: the disk is full, so to speak.
class FullDisk {
public:
    explicit FullDisk(rlim_t bytes)
        : previousHandler_(std::signal(SIGXFSZ, SIG_IGN)) {
        ::getrlimit(RLIMIT_FSIZE, &before_);
        const rlimit full = {.rlim_cur = bytes, .rlim_max = before_.rlim_max};
        EXPECT_EQ(::setrlimit(RLIMIT_FSIZE, &full), 0);
    }
    FullDisk(const FullDisk&) = delete;
    FullDisk& operator=(const FullDisk&) = delete;
    ~FullDisk() {
        ::setrlimit(RLIMIT_FSIZE, &before_);
        std::signal(SIGXFSZ, previousHandler_);
    }

private:
    rlimit before_ = {};
    void (*previousHandler_)(int);
};

// Works without rest, so that the time is right to the microsecond.
void passTime(std::chrono::microseconds time) {
    const auto end = std::chrono::steady_clock::now() + time;
    while (std::chrono::steady_clock::now() < end) {
    }
}

} // namespace

TEST_F(LayoutSaving, AProcessKilledAtAnyMomentOfASaveLeavesTheOldLayoutOrTheNew) {
    const LaunchItems one = layoutOf(200, u"/one"_s);
    const LaunchItems two = layoutOf(2000, u"/two"_s);
    LayoutStore store(queue_, files_, tree_.path());
    store.save(one);
    store.flush();
    // Moments from before the first save to after the second. How long these take is measured here, but a
    // busy machine may be slower at any time: later rounds wait for longer and longer moments.
    const auto start = std::chrono::steady_clock::now();
    for (const LaunchItems& layout : {two, one}) {
        store.save(layout);
        store.flush();
    }
    const auto twoSaves =
        std::chrono::duration_cast<std::chrono::microseconds>(std::chrono::steady_clock::now() - start);
    std::mt19937 random(17);
    int ones = 0;
    int twos = 0;
    constexpr int rounds = 200;
    for (int round = 0; round < rounds; ++round) {
        int saving[2] = {};
        ASSERT_EQ(::pipe(saving), 0);
        const pid_t child = ::fork();
        ASSERT_GE(child, 0);
        if (child == 0) {
            const char ready = '!';
            static_cast<void>(::write(saving[1], &ready, 1));
            while (true) {
                store.save(round % 2 == 0 ? two : one);
                store.flush();
                store.save(round % 2 == 0 ? one : two);
                store.flush();
            }
        }
        char ready = 0;
        EXPECT_EQ(::read(saving[0], &ready, 1), 1);
        std::uniform_int_distribution<std::int64_t> moment(0, (twoSaves.count() + 500) * (1 + round / 20));
        passTime(std::chrono::microseconds(moment(random)));
        ::kill(child, SIGKILL);
        ::waitpid(child, nullptr, 0);
        ::close(saving[0]);
        ::close(saving[1]);
        const LaunchItems left = onDisk();
        ones += left == one ? 1 : 0;
        twos += left == two ? 1 : 0;
        ASSERT_EQ(ones + twos, round + 1) << "neither the old layout nor the new one";
    }
    EXPECT_GT(ones, 0);
    EXPECT_GT(twos, 0);
}

TEST_F(LayoutSaving, AFullDiskLosesNothingAndSaysNothing) {
    LauncherModel& model = modelWith(500);
    const LaunchItems before = onDisk();
    LaunchItems reordered;
    testing::internal::CaptureStderr();
    testing::internal::CaptureStdout();
    {
        const FullDisk disk(4096);
        model.move(before.front().id(), 400);
        model.save();
        model.flushSaves();
        reordered = model.items();
    }
    EXPECT_EQ(testing::internal::GetCapturedStderr(), "");
    EXPECT_EQ(testing::internal::GetCapturedStdout(), "");
    EXPECT_NE(reordered, before);
    EXPECT_EQ(onDisk(), before) << "the old file stays whole";
    model.save();
    model.flushSaves();
    EXPECT_EQ(onDisk(), reordered) << "the next save makes up for it";
}

TEST_F(LayoutSaving, AFolderThatMayNotBeWrittenLosesNothingAndSaysNothing) {
    std::filesystem::permissions(tree_.at(), std::filesystem::perms(0755));
    LauncherModel& model = modelWith(20);
    const LaunchItems before = onDisk();
    LaunchItems reordered;
    testing::internal::CaptureStderr();
    testing::internal::CaptureStdout();
    {
        std::filesystem::permissions(tree_.at("Amberquill"), std::filesystem::perms(0555));
        const OrdinaryUser user;
        model.move(before.front().id(), 15);
        model.save();
        model.flushSaves();
        reordered = model.items();
    }
    std::filesystem::permissions(tree_.at("Amberquill"), std::filesystem::perms(0755));
    EXPECT_EQ(testing::internal::GetCapturedStderr(), "");
    EXPECT_EQ(testing::internal::GetCapturedStdout(), "");
    EXPECT_EQ(model.items(), reordered);
    EXPECT_EQ(onDisk(), before);
    model.save();
    model.flushSaves();
    EXPECT_EQ(onDisk(), reordered);
}

TEST_F(LayoutSaving, ALayoutFileThatIsASymbolicLinkStaysOne) {
    tree_.write("dotfiles/amberquill.json", encodeItems(layoutOf(3, u"/Applications"_s)));
    tree_.link("Amberquill/layout.json", "../dotfiles/amberquill.json");
    LayoutStore store(queue_, files_, tree_.path());
    ASSERT_EQ(store.load(), layoutOf(3, u"/Applications"_s));
    const LaunchItems saved = layoutOf(5, u"/other"_s);
    store.save(saved);
    store.flush();
    EXPECT_TRUE(std::filesystem::is_symlink(tree_.at("Amberquill/layout.json")));
    EXPECT_EQ(tree_.read("dotfiles/amberquill.json"), encodeItems(saved));
}

TEST_F(LayoutSaving, MissingFoldersAreMadeForTheUserAlone) {
    LayoutStore store(queue_, files_, tree_.path("deep/below"));
    store.save(layoutOf(1, u"/a"_s));
    store.flush();
    const auto folder = std::filesystem::status(tree_.at("deep/below/Amberquill"));
    EXPECT_EQ(folder.permissions(), std::filesystem::perms(0700));
    EXPECT_EQ(LayoutStore(queue_, files_, tree_.path("deep/below")).load(), layoutOf(1, u"/a"_s));
}
