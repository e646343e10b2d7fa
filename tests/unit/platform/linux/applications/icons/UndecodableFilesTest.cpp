#include "platform/linux/applications/icons/UndecodableFiles.h"
#include "platform/linux/files/RegularFile.h"
#include "support/IconFiles.h"
#include "support/TemporaryTree.h"

#include <atomic>
#include <fcntl.h>
#include <gtest/gtest.h>
#include <thread>

using namespace amberquill;
using namespace amberquill::desktop;

namespace {

const FileState bad{.path = "/icons/bad", .modified = 1, .size = 2};
const FileState worse{.path = "/icons/worse", .modified = 1, .size = 2};

class UndecodableFilesTest : public testing::Test {
protected:
    std::string path() const { return files_.at("cache/Amberquill/undecodable").string(); }
    // As read by the next start.
    bool isKept(const FileState& file) const { return UndecodableFiles(path(), "1").contains(file); }

    TemporaryTree files_;
};

} // namespace

TEST_F(UndecodableFilesTest, AddedFilesAreKeptForTheNextStart) {
    UndecodableFiles files(path(), "1");
    EXPECT_FALSE(files.contains(bad));
    files.add(bad);
    EXPECT_TRUE(files.contains(bad));
    EXPECT_TRUE(isKept(bad));
    EXPECT_FALSE(isKept(worse));
    files.add(worse);
    EXPECT_TRUE(isKept(bad));
    EXPECT_TRUE(isKept(worse));
}

TEST_F(UndecodableFilesTest, AnotherVersionStartsWithAnEmptyList) {
    UndecodableFiles(path(), "1").add(bad);
    UndecodableFiles newer(path(), "2");
    EXPECT_FALSE(newer.contains(bad));
    newer.add(worse);
    EXPECT_FALSE(isKept(bad));
    EXPECT_TRUE(UndecodableFiles(path(), "2").contains(worse));
}

TEST_F(UndecodableFilesTest, FilesAddedByAnotherProcessAreKept) {
    UndecodableFiles one(path(), "1");
    UndecodableFiles other(path(), "1");
    EXPECT_FALSE(one.contains(bad));
    other.add(bad);
    one.add(worse);
    EXPECT_TRUE(one.contains(bad));
    EXPECT_TRUE(isKept(bad));
    EXPECT_TRUE(isKept(worse));
}

TEST_F(UndecodableFilesTest, WithoutAWritableFileTheListIsKeptInMemory) {
    files_.write("cache", "a file where the folder should be");
    UndecodableFiles files(path(), "1");
    files.add(bad);
    EXPECT_TRUE(files.contains(bad));
}

TEST_F(UndecodableFilesTest, AnInvalidFileIsReplaced) {
    files_.write("cache/Amberquill/undecodable", QByteArray(3'000'000, '\xFF'));
    UndecodableFiles files(path(), "1");
    EXPECT_FALSE(files.contains(bad));
    files.add(bad);
    EXPECT_TRUE(isKept(bad));
}

TEST_F(UndecodableFilesTest, EarlierVersionsNotesAreRemovedWithoutFollowingLinks) {
    files_.write("cache/Amberquill/decoding/suspects", "x");
    files_.write("cache/Amberquill/decoding/decoding-abc", "x");
    files_.write("cache/Amberquill/names", "x");
    EXPECT_FALSE(isKept(bad));
    EXPECT_FALSE(std::filesystem::exists(files_.at("cache/Amberquill/decoding")));
    EXPECT_TRUE(std::filesystem::exists(files_.at("cache/Amberquill/names")));
    files_.write("elsewhere/file", "x");
    files_.link("cache/Amberquill/decoding", files_.at("elsewhere"));
    EXPECT_FALSE(isKept(bad));
    EXPECT_TRUE(std::filesystem::exists(files_.at("elsewhere/file")));
}

TEST_F(UndecodableFilesTest, ThreadsMayAddAtTheSameTime) {
    UndecodableFiles files(path(), "1");
    std::atomic<int> found = 0;
    std::vector<std::thread> threads;
    for (int thread = 0; thread < 4; ++thread) {
        threads.emplace_back([&, thread] {
            for (int i = 0; i < 5; ++i) {
                const FileState file{
                    .path = "/" + std::to_string(thread) + '/' + std::to_string(i), .modified = 1, .size = 2};
                files.add(file);
                found += files.contains(file) ? 1 : 0;
            }
        });
    }
    for (auto& thread : threads) {
        thread.join();
    }
    EXPECT_EQ(found, 20);
    EXPECT_TRUE(isKept({.path = "/0/0", .modified = 1, .size = 2}));
    EXPECT_TRUE(isKept({.path = "/3/4", .modified = 1, .size = 2}));
}

namespace {

std::optional<FileState> stateOf(const QString& path) {
    const auto name = path.toStdString();
    return fileState(openForReading(AT_FDCWD, name.c_str()), name);
}

} // namespace

TEST(FileState, AChangeOfTimeOrSizeIsAnotherState) {
    const TemporaryTree files;
    const auto path = files.write("a", "one");
    setModified(path, 1'000);
    const auto first = stateOf(path);
    ASSERT_TRUE(first);
    EXPECT_EQ(*first, (FileState{.path = path.toStdString(), .modified = 1'000'000'000'000, .size = 3}));
    EXPECT_EQ(stateOf(path), first);
    setModified(path, 1'001);
    EXPECT_NE(stateOf(path), first);
    files.write("a", "longer");
    setModified(path, 1'000);
    EXPECT_NE(stateOf(path), first);
}

TEST(FileState, OnlyRegularFilesHaveAState) {
    const TemporaryTree files;
    files.write("a", "x");
    EXPECT_TRUE(stateOf(files.link("link", "a")));
    EXPECT_FALSE(stateOf(files.path()));
    EXPECT_FALSE(stateOf(files.path("missing")));
}

namespace {

FileState fileNumber(std::size_t number) {
    return {.path = "/icons/" + std::to_string(number), .modified = 1, .size = 2};
}

UndecodableList writtenAndRead(const UndecodableList& list) {
    return UndecodableList::read(list.written("1"), "1");
}

} // namespace

TEST(UndecodableList, AFileIsListedUntilItChanges) {
    UndecodableList list;
    EXPECT_FALSE(list.contains(fileNumber(1)));
    list.put(fileNumber(1));
    EXPECT_TRUE(list.contains(fileNumber(1)));
    EXPECT_FALSE(list.contains(fileNumber(2)));
    auto changed = fileNumber(1);
    changed.modified = 5;
    EXPECT_FALSE(list.contains(changed));
    list.put(changed);
    EXPECT_TRUE(list.contains(changed));
    EXPECT_FALSE(list.contains(fileNumber(1)));
}

TEST(UndecodableList, AWrittenListCanBeRead) {
    UndecodableList list;
    const std::vector<FileState> files{
        {.path = "/a b\n\xFF%20/ü.svg", .modified = -1, .size = 0},
        {.path = "/" + std::string(4000, 'x'), .modified = 1'700'000'000'123'456'789, .size = 8}};
    for (const auto& file : files) {
        list.put(file);
    }
    for (const auto& file : files) {
        EXPECT_TRUE(writtenAndRead(list).contains(file)) << file.path;
    }
    EXPECT_EQ(list.written("1").count('\n'), 3);
}

TEST(UndecodableList, AnotherVersionsListIsEmpty) {
    UndecodableList list;
    list.put(fileNumber(1));
    EXPECT_FALSE(UndecodableList::read(list.written("1"), "2").contains(fileNumber(1)));
    EXPECT_FALSE(UndecodableList::read(list.written("1"), "").contains(fileNumber(1)));
    EXPECT_FALSE(UndecodableList::read(list.written("11"), "1").contains(fileNumber(1)));
}

TEST(UndecodableList, BeyondTheMaximumTheOldestAreDropped) {
    UndecodableList list;
    for (std::size_t i = 0; i <= UndecodableList::maximumFiles; ++i) {
        list.put(fileNumber(i));
    }
    EXPECT_FALSE(list.contains(fileNumber(0)));
    EXPECT_TRUE(list.contains(fileNumber(1)));
    EXPECT_TRUE(writtenAndRead(list).contains(fileNumber(1)));
    list.put(fileNumber(1)); // the newest now
    list.put(fileNumber(0));
    EXPECT_TRUE(list.contains(fileNumber(1)));
    EXPECT_FALSE(list.contains(fileNumber(2)));
}

TEST(UndecodableList, TheTextIsBounded) {
    UndecodableList list;
    for (std::size_t i = 0; i < UndecodableList::maximumFiles; ++i) {
        auto file = fileNumber(i);
        file.path += std::string(4000, '\x01');
        list.put(file);
    }
    auto tooLong = fileNumber(1000);
    tooLong.path += std::string(5000, 'x');
    list.put(tooLong);
    EXPECT_FALSE(list.contains(tooLong));
    const auto text = list.written("1");
    EXPECT_LE(text.size(), UndecodableList::maximumBytes);
    EXPECT_GT(text.size(), UndecodableList::maximumBytes - 20'000);
    auto newest = fileNumber(UndecodableList::maximumFiles - 1);
    newest.path += std::string(4000, '\x01');
    EXPECT_TRUE(UndecodableList::read(text, "1").contains(newest));
}

TEST(UndecodableList, MalformedLinesAreSkipped) {
    const auto heading = UndecodableList().written("1");
    for (const QByteArray& text :
         {QByteArray(), QByteArray(100'000, '\xFF'), QByteArray(100'000, '\n'), QByteArray("1 2 /icons/1\n"),
          heading + "1 2\n", heading + "1 2 icons/1\n", heading + "x 2 /icons/1\n",
          heading + "1 x /icons/1\n", heading + "1 2 /icons/1 3\n",
          heading + "99999999999999999999 2 /icons/1\n",
          heading + QByteArray(heading.size() + UndecodableList::maximumBytes, '\n') + "1 2 /icons/1\n"}) {
        EXPECT_EQ(UndecodableList::read(text, "1").written("1"), heading) << text.left(200).toStdString();
    }
    EXPECT_TRUE(UndecodableList::read(heading + "nonsense\n\n1 2 /icons/1", "1").contains(fileNumber(1)));
}
