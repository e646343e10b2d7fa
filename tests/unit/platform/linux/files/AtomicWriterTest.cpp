#include "platform/linux/files/AtomicWriter.h"

#include "platform/linux/files/PosixFileSystem.h"
#include "support/TemporaryTree.h"

#include <atomic>
#include <gtest/gtest.h>
#include <sys/stat.h>
#include <thread>
#include <unistd.h>

using namespace amberquill;
using namespace amberquill::desktop;
namespace fs = std::filesystem;

namespace {

class LeftoverFiles : public testing::Test {
protected:
    [[nodiscard]] QByteArray folder() const { return QByteArray(tree_.at("data").c_str()); }
    [[nodiscard]] bool exists(const fs::path& name) const {
        return fs::exists(fs::symlink_status(tree_.at("data") / name));
    }

    TemporaryTree tree_;
};

} // namespace

TEST_F(LeftoverFiles, FilesOfKilledSavesAreRemoved) {
    const std::array names = {".amberquill-0123456789abcdef", ".amberquill-Xy1zAb", ".amberquill-abcde7"};
    for (const char* const name : names) {
        tree_.write(fs::path("data") / name, "half a lay");
    }
    removeLeftoverFiles(folder());
    EXPECT_TRUE(fs::is_empty(tree_.at("data")));
}

TEST_F(LeftoverFiles, OtherFilesAreNotRemoved) {
    const std::array names = {"layout.json",
                              ".amberquill-",
                              ".amberquill-config",
                              ".amberquill-ab12",
                              ".amberquill-ab-12c",
                              "amberquill-0123456789abcdef",
                              ".amberquill-12345678",
                              ".amberquill-0123456789abcdef.json",
                              ".amberquill-0123456789ABCDEF"};
    for (const char* const name : names) {
        tree_.write(fs::path("data") / name, "of the user");
    }
    tree_.makeFolder("data/.amberquill-000000000000000a");
    tree_.link("data/.amberquill-000000000000000b", "layout.json");
    fs::create_hard_link(tree_.at("data/layout.json"), tree_.at("data/.amberquill-000000000000000c"));
    ASSERT_EQ(::mkfifo(tree_.at("data/.amberquill-000000000000000d").c_str(), 0600), 0);
    removeLeftoverFiles(folder());
    for (const char* const name : names) {
        EXPECT_TRUE(exists(name)) << name;
    }
    for (const char last : {'a', 'b', 'c', 'd'}) {
        EXPECT_TRUE(exists(std::string(".amberquill-000000000000000") + last)) << last;
    }
}

TEST_F(LeftoverFiles, AFileOfAnotherUserIsNotRemoved) {
    tree_.write("data/.amberquill-0123456789abcdef", "content");
    if (::chown(tree_.at("data/.amberquill-0123456789abcdef").c_str(), 65534, 65534) != 0) {
        GTEST_SKIP() << "only root can give files away";
    }
    removeLeftoverFiles(folder());
    EXPECT_TRUE(exists(".amberquill-0123456789abcdef"));
}

TEST_F(LeftoverFiles, AFileThatIsBeingWrittenIsNotRemoved) {
    tree_.makeFolder("data");
    auto file = makeTemporaryFile(folder(), 0600);
    ASSERT_TRUE(file);
    removeLeftoverFiles(folder());
    EXPECT_TRUE(fs::exists(file->path.constData()));
    file->file.close();
    removeLeftoverFiles(folder());
    EXPECT_FALSE(fs::exists(file->path.constData()));
}

TEST_F(LeftoverFiles, RemovingLeftoversDoesNotDisturbASave) {
    tree_.makeFolder("data");
    std::atomic<bool> stop = false;
    std::thread remover([&] {
        while (!stop) {
            removeLeftoverFiles(folder());
        }
    });
    PosixFileSystem files;
    int failures = 0;
    for (int i = 0; i < 500; ++i) {
        failures += files.writeAtomically(tree_.path("data/layout.json"), QByteArray::number(i)) ? 0 : 1;
    }
    stop = true;
    remover.join();
    EXPECT_EQ(failures, 0);
    EXPECT_EQ(tree_.read("data/layout.json"), "499");
}

TEST_F(LeftoverFiles, AMissingFolderIsIgnored) {
    removeLeftoverFiles(folder());
    EXPECT_FALSE(fs::exists(tree_.at("data")));
}
