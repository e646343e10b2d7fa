#include "data/LayoutCoding.h"
#include "model/LauncherModel.h"
#include "model/LayoutStore.h"
#include "platform/linux/files/AtomicWriter.h"
#include "platform/linux/files/JsonPreferences.h"
#include "platform/linux/files/PosixFileSystem.h"
#include "support/LogRecorder.h"
#include "support/ManualQueue.h"
#include "support/MemoryFileSystem.h"
#include "support/MemoryPreferences.h"
#include "support/OrdinaryUser.h"
#include "support/TemporaryTree.h"

#include <algorithm>
#include <array>
#include <csignal>
#include <cstdint>
#include <cstdlib>
#include <functional>
#include <gtest/gtest.h>
#include <sys/ptrace.h>
#include <sys/resource.h>
#include <sys/stat.h>
#include <sys/syscall.h>
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

    [[nodiscard]] std::ptrdiff_t namesInFolder() const {
        return std::distance(std::filesystem::directory_iterator(tree_.at("Amberquill")), {});
    }

    // A model over real files that has saved a layout of `count` applications.
    LauncherModel& modelWith(int count) {
        model_ = std::make_unique<LauncherModel>(LauncherModel::Services{
            .queue = queue_,
            .files = files_,
            .preferences = preferences_,
            .applicationSupport = tree_.path(),
            .scan = [] { return std::vector<AppInfo>(); },
        });
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

// Simulates a full disk: no file may grow beyond `bytes` while this object exists.
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

enum class End { Killed, Done, Failed };

// Whether a stopped child enters or leaves a system call that may change files. The number of other calls,
// for memory and random numbers, varies between runs.
bool mayChangeFiles(pid_t child, std::uint64_t& call) {
    __ptrace_syscall_info information = {};
    if (::ptrace(PTRACE_GET_SYSCALL_INFO, child, sizeof information, &information) <= 0) {
        return true;
    }
    if (information.op == PTRACE_SYSCALL_INFO_ENTRY) {
        call = information.entry.nr;
    }
    constexpr std::array<std::uint64_t, 7> others = {SYS_brk,     SYS_mmap,     SYS_munmap,   SYS_mremap,
                                                     SYS_madvise, SYS_mprotect, SYS_getrandom};
    return std::find(others.begin(), others.end(), call) == others.end();
}

// Does the work in a child process and kills it at its `moment`th entry into or return from such a system
// call: nothing changes on the disk between two such moments. `Done`: the work ended before that moment.
End doKilledAt(int moment, const std::function<void()>& work) {
    const pid_t child = ::fork();
    if (child == 0) {
        if (::ptrace(PTRACE_TRACEME, 0, nullptr, nullptr) != 0) {
            ::_exit(EXIT_FAILURE);
        }
        ::raise(SIGSTOP);
        work();
        ::_exit(EXIT_SUCCESS);
    }
    int status = 0;
    if (child < 0 || ::waitpid(child, &status, 0) != child || !WIFSTOPPED(status) ||
        ::ptrace(PTRACE_SETOPTIONS, child, nullptr, PTRACE_O_EXITKILL | PTRACE_O_TRACESYSGOOD) != 0) {
        return End::Failed;
    }
    std::uint64_t call = 0;
    for (int passed = 0; passed < moment; passed += mayChangeFiles(child, call) ? 1 : 0) {
        if (::ptrace(PTRACE_SYSCALL, child, nullptr, nullptr) != 0 || ::waitpid(child, &status, 0) != child) {
            return End::Failed;
        }
        if (!WIFSTOPPED(status)) {
            return WIFEXITED(status) && WEXITSTATUS(status) == EXIT_SUCCESS ? End::Done : End::Failed;
        }
    }
    ::kill(child, SIGKILL);
    return ::waitpid(child, &status, 0) == child && WIFSIGNALED(status) ? End::Killed : End::Failed;
}

} // namespace

TEST_F(LayoutSaving, AProcessKilledAtAnyMomentOfASaveLeavesTheOldLayoutOrTheNew) {
    const LaunchItems one = layoutOf(200, u"/one"_s);
    const LaunchItems two = layoutOf(2000, u"/two"_s);
    LayoutStore store(queue_, files_, tree_.path());
    store.save(one);
    store.flush();
    const QByteArray before = tree_.read("Amberquill/layout.json");
    const auto saveTwice = [&] {
        for (const LaunchItems& layout : {two, one}) {
            store.save(layout);
            store.flush();
        }
    };
    std::vector<bool> wereTwo; // at each moment
    End end = End::Killed;
    constexpr int mostMoments = 10'000;
    for (int moment = 0; end == End::Killed && moment < mostMoments; ++moment) {
        tree_.write("Amberquill/layout.json", before);
        end = doKilledAt(moment, saveTwice);
        ASSERT_NE(end, End::Failed);
        const LaunchItems left = onDisk();
        ASSERT_TRUE(left == one || left == two)
            << "neither the old layout nor the new one at moment " << moment;
        wereTwo.push_back(left == two);
    }
    EXPECT_EQ(end, End::Done) << "the two saves do not end";
    // The first layout, then the second, then the first again.
    EXPECT_FALSE(wereTwo.front());
    EXPECT_NE(std::find(wereTwo.begin(), wereTwo.end(), true), wereTwo.end())
        << "the first save has not changed the file";
    EXPECT_FALSE(wereTwo.back()) << "the second save has not changed the file";
    // The next start removes the killed processes' temporary files.
    EXPECT_GT(namesInFolder(), 1);
    removeLeftoverFiles(tree_.path("Amberquill").toUtf8());
    EXPECT_EQ(namesInFolder(), 1);
}

TEST_F(LayoutSaving, AFullDiskLosesNothingSilently) {
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

TEST_F(LayoutSaving, AReadOnlyFolderLosesNothingSilently) {
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

TEST_F(LayoutSaving, ASymbolicLinkToTheLayoutStaysALink) {
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

TEST_F(LayoutSaving, AGridChangeIsOneBackgroundWriteOfThePreferences) {
    MemoryFileSystem files;
    JsonPreferences preferences(files, u"/config/preferences.json"_s);
    preferences.writeOn(queue_);
    LauncherModel model(LauncherModel::Services{
        .queue = queue_,
        .files = files,
        .preferences = preferences,
        .applicationSupport = u"/data"_s,
        .scan = [] { return std::vector<AppInfo>(); },
    });
    model.setGrid(8, 6);
    EXPECT_EQ(files.writes(), 0);
    queue_.runPosted();
    EXPECT_EQ(files.writes(), 1);
    const JsonPreferences later(files, u"/config/preferences.json"_s);
    EXPECT_EQ(later.integer(u"gridColumns"_s), 8);
    EXPECT_EQ(later.integer(u"gridRows"_s), 6);
}

TEST_F(LayoutSaving, AWriteThatAFullDiskRefusedIsRetriedOnceThereIsRoom) {
    LauncherModel& model = modelWith(500);
    {
        const FullDisk disk(4096);
        model.move(model.items().front().id(), 400);
        model.save();
        queue_.advance(60);
        EXPECT_NE(onDisk(), model.items());
    }
    queue_.advance(300);
    EXPECT_EQ(onDisk(), model.items());
}

TEST_F(LayoutSaving, AWriteThatAReadOnlyFolderRefusedIsRetriedOnceItIsWritable) {
    std::filesystem::permissions(tree_.at(), std::filesystem::perms(0755));
    LauncherModel& model = modelWith(20);
    std::filesystem::permissions(tree_.at("Amberquill"), std::filesystem::perms(0555));
    {
        const OrdinaryUser user;
        model.move(model.items().front().id(), 15);
        model.save();
        queue_.advance(60);
    }
    EXPECT_NE(onDisk(), model.items());
    std::filesystem::permissions(tree_.at("Amberquill"), std::filesystem::perms(0755));
    queue_.advance(300);
    EXPECT_EQ(onDisk(), model.items());
}

TEST_F(LayoutSaving, AnUndecodableLayoutStaysUntilItCanBeSetAside) {
    std::filesystem::permissions(tree_.at(), std::filesystem::perms(0755));
    tree_.write("Amberquill/layout.json", "[{\"app\":");
    std::filesystem::permissions(tree_.at("Amberquill/layout.json"), std::filesystem::perms(0666));
    std::filesystem::permissions(tree_.at("Amberquill"), std::filesystem::perms(0555));
    LayoutStore store(queue_, files_, tree_.path());
    {
        const OrdinaryUser user;
        EXPECT_TRUE(store.load().empty());
        store.save(layoutOf(3, u"/a"_s));
        queue_.advance(60);
        store.flush();
    }
    EXPECT_EQ(tree_.read("Amberquill/layout.json"), "[{\"app\":");
    std::filesystem::permissions(tree_.at("Amberquill"), std::filesystem::perms(0755));
    queue_.advance(300);
    EXPECT_EQ(onDisk(), layoutOf(3, u"/a"_s));
    EXPECT_EQ(tree_.read("Amberquill/layout.json.unreadable-1"), "[{\"app\":");
}

TEST_F(LayoutSaving, AFolderOrAPipeInTheLayoutsPlaceIsKept) {
    const std::filesystem::path layout = tree_.at("Amberquill/layout.json");
    const auto saveBeside = [&] {
        LayoutStore store(queue_, files_, tree_.path());
        EXPECT_TRUE(store.load().empty());
        store.save(layoutOf(3, u"/a"_s));
        queue_.advance(600);
        store.flush();
        EXPECT_EQ(namesInFolder(), 1);
    };
    const std::string log = debugLog("amberquill.saving", [&] {
        tree_.makeFolder("Amberquill/layout.json/of the user");
        saveBeside();
        EXPECT_TRUE(std::filesystem::is_directory(layout / "of the user"));
        tree_.remove("Amberquill/layout.json");
        ASSERT_EQ(::mkfifo(layout.c_str(), 0600), 0);
        saveBeside();
        EXPECT_TRUE(std::filesystem::is_fifo(layout));
    });
    EXPECT_EQ(QByteArray::fromStdString(log).count('\n'), 2) << "one line each: " << log;
}
