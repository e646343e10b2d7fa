#include "platform/linux/applications/icons/UndecodableFiles.h"

#include "support/TemporaryTree.h"

#include <atomic>
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
    // As the next start has it.
    bool isKept(const FileState& file) const { return UndecodableFiles(path(), "1").contains(file); }

    TemporaryTree files_;
};

} // namespace

TEST_F(UndecodableFilesTest, WhatIsAddedIsThereAtTheNextStart) {
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

TEST_F(UndecodableFilesTest, AnotherVersionBeginsAnew) {
    UndecodableFiles(path(), "1").add(bad);
    UndecodableFiles newer(path(), "2");
    EXPECT_FALSE(newer.contains(bad));
    newer.add(worse);
    EXPECT_FALSE(isKept(bad));
    EXPECT_TRUE(UndecodableFiles(path(), "2").contains(worse));
}

TEST_F(UndecodableFilesTest, WhatAnotherProcessAddsStays) {
    UndecodableFiles one(path(), "1");
    UndecodableFiles other(path(), "1");
    EXPECT_FALSE(one.contains(bad));
    other.add(bad);
    one.add(worse);
    EXPECT_TRUE(one.contains(bad));
    EXPECT_TRUE(isKept(bad));
    EXPECT_TRUE(isKept(worse));
}

TEST_F(UndecodableFilesTest, WithoutAPlaceToWriteToItIsRememberedAllTheSame) {
    files_.write("cache", "a file where the folder should be");
    UndecodableFiles files(path(), "1");
    files.add(bad);
    EXPECT_TRUE(files.contains(bad));
}

TEST_F(UndecodableFilesTest, NonsenseInTheFileIsNothingAndGoes) {
    files_.write("cache/Amberquill/undecodable", QByteArray(3'000'000, '\xFF'));
    UndecodableFiles files(path(), "1");
    EXPECT_FALSE(files.contains(bad));
    files.add(bad);
    EXPECT_TRUE(isKept(bad));
}

TEST_F(UndecodableFilesTest, TheFormerNotesGoAndNothingThatALinkLeadsTo) {
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
