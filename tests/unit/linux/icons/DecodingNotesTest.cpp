#include "platform/linux/applications/icons/DecodingNotes.h"

#include "support/IconFiles.h"

#include <csignal>
#include <gtest/gtest.h>
#include <set>
#include <sys/wait.h>
#include <thread>
#include <unistd.h>

using namespace amberquill;
using namespace amberquill::desktop;

namespace {

FileState file(int number) {
    return {.path = "/icons/" + std::to_string(number), .modified = number, .size = number + 1};
}

class DecodingNotesTest : public testing::Test {
protected:
    std::string folder() const { return files_.at("cache/decoding").string(); }

    // A process that notes these files and is killed.
    void dieWith(const std::vector<FileState>& noted, const std::vector<FileState>& erased = {}) const {
        const auto child = ::fork();
        if (child == 0) {
            DecodingNotes notes(folder());
            for (const auto& one : erased) {
                notes.erase(notes.write(one).value());
            }
            for (const auto& one : noted) {
                static_cast<void>(notes.write(one));
            }
            ::raise(SIGKILL);
        }
        int status = 0;
        ASSERT_EQ(::waitpid(child, &status, 0), child);
        ASSERT_TRUE(WIFSIGNALED(status));
    }

    std::size_t filesInFolder() const {
        return static_cast<std::size_t>(std::distance(std::filesystem::directory_iterator(folder()), {}));
    }

    TemporaryTree files_;
};

using Lists = std::vector<std::vector<FileState>>;

} // namespace

TEST_F(DecodingNotesTest, WhatAKilledProcessNotedIsFoundOnce) {
    dieWith({file(1), file(2)}, {file(3)});
    EXPECT_EQ(takeAbandonedNotes(folder()), (Lists{{file(1), file(2)}}));
    EXPECT_EQ(takeAbandonedNotes(folder()), Lists{});
    EXPECT_EQ(filesInFolder(), 0U);
}

TEST_F(DecodingNotesTest, WhatWasErasedIsNotFound) {
    dieWith({}, {file(1), file(2)});
    EXPECT_EQ(takeAbandonedNotes(folder()), Lists{});
    EXPECT_EQ(filesInFolder(), 0U);
}

TEST_F(DecodingNotesTest, EachProcessHasItsOwnList) {
    dieWith({file(1)});
    dieWith({file(2)});
    auto lists = takeAbandonedNotes(folder());
    std::sort(lists.begin(), lists.end());
    EXPECT_EQ(lists, (Lists{{file(1)}, {file(2)}}));
}

TEST_F(DecodingNotesTest, NotesOfALivingProcessAreLeftAlone) {
    {
        DecodingNotes notes(folder());
        ASSERT_TRUE(notes.write(file(1)));
        EXPECT_EQ(takeAbandonedNotes(folder()), Lists{});
        EXPECT_EQ(filesInFolder(), 1U);
    }
    EXPECT_EQ(filesInFolder(), 0U); // it ended well
}

TEST_F(DecodingNotesTest, NothingIsMadeBeforeTheFirstNote) {
    const DecodingNotes notes(folder());
    EXPECT_FALSE(std::filesystem::exists(folder()));
}

TEST_F(DecodingNotesTest, FoldersAreTheUsersAlone) {
    DecodingNotes notes(folder());
    ASSERT_TRUE(notes.write(file(1)));
    for (const auto* const made : {"cache", "cache/decoding"}) {
        EXPECT_EQ(std::filesystem::status(files_.at(made)).permissions(), std::filesystem::perms::owner_all);
    }
}

TEST_F(DecodingNotesTest, WhatCannotBeNotedIsNone) {
    files_.write("cache", "a file where the folder should be");
    DecodingNotes notes(folder());
    EXPECT_FALSE(notes.write(file(1)));
    const TemporaryTree other;
    DecodingNotes working(other.at("decoding").string());
    EXPECT_FALSE(working.write({.path = '/' + std::string(5'000, 'x'), .modified = 1, .size = 1}));
    EXPECT_TRUE(working.write({.path = '/' + std::string(4'000, 'x'), .modified = 1, .size = 1}));
}

TEST_F(DecodingNotesTest, SlotsAreGivenOnceAndTakenBack) {
    DecodingNotes notes(folder());
    std::set<unsigned> slots;
    for (unsigned i = 0; i < DecodingNotes::slotCount; ++i) {
        slots.insert(notes.write(file(static_cast<int>(i))).value());
    }
    EXPECT_EQ(slots.size(), DecodingNotes::slotCount);
    EXPECT_FALSE(notes.write(file(100)));
    notes.erase(17);
    EXPECT_EQ(notes.write(file(101)), 17U);
}

TEST_F(DecodingNotesTest, ThreadsDoNotConfuseOneAnother) {
    const auto child = ::fork();
    if (child == 0) {
        DecodingNotes notes(folder());
        std::vector<std::thread> threads;
        for (int thread = 0; thread < 8; ++thread) {
            threads.emplace_back([&notes, thread] {
                for (int i = 0; i < 200; ++i) {
                    notes.erase(notes.write(file(i)).value());
                }
                static_cast<void>(notes.write(file(1'000 + thread)));
            });
        }
        for (auto& thread : threads) {
            thread.join();
        }
        ::raise(SIGKILL);
    }
    ASSERT_EQ(::waitpid(child, nullptr, 0), child);
    auto lists = takeAbandonedNotes(folder());
    ASSERT_EQ(lists.size(), 1U);
    std::sort(lists[0].begin(), lists[0].end());
    std::vector<FileState> expected;
    for (int thread = 0; thread < 8; ++thread) {
        expected.push_back(file(1'000 + thread));
    }
    EXPECT_EQ(lists[0], expected);
}

TEST_F(DecodingNotesTest, ABrokenNoteIsNoNote) {
    dieWith({file(1), file(2)});
    const auto name = std::filesystem::directory_iterator(folder())->path().filename();
    const auto relative = std::filesystem::path("cache/decoding") / name;
    const auto whole = files_.read(relative);
    for (qsizetype at = 0; at < 32; ++at) {
        auto broken = whole;
        broken[at] = static_cast<char>(broken[at] + 1);
        files_.write(relative, broken);
        EXPECT_EQ(takeAbandonedNotes(folder()), (Lists{{file(2)}})) << at;
    }
    files_.write(relative, QByteArray(100'000, '\xFF'));
    EXPECT_EQ(takeAbandonedNotes(folder()), Lists{});
    files_.write(relative, "");
    EXPECT_EQ(takeAbandonedNotes(folder()), Lists{});
}

TEST_F(DecodingNotesTest, OtherFilesInTheFolderStay) {
    files_.write("cache/decoding/suspects", "x");
    files_.makeFolder("cache/decoding/decoding-folder");
    ASSERT_EQ(::mkfifo(files_.at("cache/decoding/decoding-pipe").c_str(), 0600), 0);
    files_.link("cache/decoding/decoding-link", "suspects");
    EXPECT_EQ(takeAbandonedNotes(folder()), Lists{});
    EXPECT_EQ(filesInFolder(), 4U);
}
