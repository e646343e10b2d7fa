#include "platform/linux/applications/icons/DecodingJournal.h"

#include "support/IconFiles.h"

#include <array>
#include <condition_variable>
#include <csignal>
#include <gtest/gtest.h>
#include <latch>
#include <sys/resource.h>
#include <sys/wait.h>
#include <thread>
#include <unistd.h>

using namespace amberquill;
using namespace amberquill::desktop;

namespace {

const QImage answer = filledImage(1, 1, Qt::red);

class DecodingJournalTest : public testing::Test {
protected:
    std::string folder() const { return files_.at("decoding").string(); }

    FileState file(const char* name) const {
        return {.path = files_.at(name).string(), .modified = 1, .size = 2};
    }

    // Whether a new process would decode the file; it does, then.
    bool decodes(const FileState& one) const {
        DecodingJournal journal(folder());
        return decodes(journal, one);
    }
    static bool decodes(DecodingJournal& journal, const FileState& one) {
        bool asked = false;
        const auto image = journal.decode(one, [&] {
            asked = true;
            return answer;
        });
        EXPECT_EQ(image.isNull(), !asked);
        return asked;
    }

    // A process that dies while it decodes these files, all at once.
    void dieDecoding(const std::vector<FileState>& all) const {
        const auto child = ::fork();
        if (child == 0) {
            ::signal(SIGSEGV, SIG_DFL); // no report of what is meant to happen
            const rlimit noCore{};
            ::setrlimit(RLIMIT_CORE, &noCore);
            DecodingJournal journal(folder());
            std::latch allBegan(static_cast<std::ptrdiff_t>(all.size()));
            std::vector<std::thread> threads;
            for (const auto& one : all) {
                threads.emplace_back([&, one] {
                    static_cast<void>(journal.decode(one, [&]() -> QImage {
                        allBegan.arrive_and_wait();
                        ::raise(SIGSEGV);
                        return {};
                    }));
                });
            }
            for (auto& thread : threads) {
                thread.join();
            }
            ::_exit(0);
        }
        int status = 0;
        ASSERT_EQ(::waitpid(child, &status, 0), child);
        ASSERT_FALSE(WIFEXITED(status) && WEXITSTATUS(status) == 0);
    }

    TemporaryTree files_;
};

} // namespace

TEST_F(DecodingJournalTest, AFileIsDecodedAndTheAnswerPassedOn) {
    DecodingJournal journal(folder());
    EXPECT_EQ(journal.decode(file("a"), [] { return answer; }), answer);
    EXPECT_TRUE(journal.decode(file("b"), [] { return QImage(); }).isNull());
    EXPECT_TRUE(decodes(journal, file("b")));
}

TEST_F(DecodingJournalTest, WhatEndedAProcessIsNotDecodedAgain) {
    dieDecoding({file("bad")});
    EXPECT_FALSE(decodes(file("bad")));
    EXPECT_FALSE(decodes(file("bad"))); // nor at any later start
    EXPECT_TRUE(decodes(file("good")));
}

TEST_F(DecodingJournalTest, WhatIsStillDecodedWhenAProcessEndsByItselfIsNotToBlame) {
    const auto child = ::fork();
    if (child == 0) {
        DecodingJournal journal(folder());
        std::latch begun(1);
        std::latch never(1);
        std::thread([&] {
            static_cast<void>(journal.decode(file("long"), [&]() -> QImage {
                begun.count_down();
                never.wait();
                return {};
            }));
        }).detach();
        begun.wait();
        journal.withdraw();
        ::_exit(0);
    }
    int status = 0;
    ASSERT_EQ(::waitpid(child, &status, 0), child);
    ASSERT_TRUE(WIFEXITED(status) && WEXITSTATUS(status) == 0);
    EXPECT_TRUE(decodes(file("long")));
}

TEST_F(DecodingJournalTest, AFileThatChangedIsTriedAgain) {
    dieDecoding({file("bad")});
    auto mended = file("bad");
    mended.modified = 2;
    EXPECT_TRUE(decodes(mended));
    EXPECT_FALSE(decodes(file("bad")));
}

TEST_F(DecodingJournalTest, WhatWasDecodedBeforeTheEndIsNotSuspected) {
    const auto child = ::fork();
    if (child == 0) {
        DecodingJournal journal(folder());
        static_cast<void>(journal.decode(file("good"), [] { return answer; }));
        ::raise(SIGKILL);
    }
    ASSERT_EQ(::waitpid(child, nullptr, 0), child);
    EXPECT_TRUE(decodes(file("good")));
    EXPECT_FALSE(std::filesystem::exists(files_.at("decoding/suspects")));
}

TEST_F(DecodingJournalTest, OfSeveralTheInnocentAreCleared) {
    dieDecoding({file("bad"), file("good")});
    EXPECT_TRUE(decodes(file("good")));
    dieDecoding({file("bad")});
    EXPECT_FALSE(decodes(file("bad")));
    EXPECT_TRUE(decodes(file("good")));
    EXPECT_FALSE(files_.read("decoding/suspects").contains("good"));
}

TEST_F(DecodingJournalTest, ASecondDeathInCompanyIsEnough) {
    dieDecoding({file("bad"), file("a")});
    dieDecoding({file("bad"), file("b")});
    EXPECT_FALSE(decodes(file("bad")));
    EXPECT_TRUE(decodes(file("a")));
    EXPECT_TRUE(decodes(file("b")));
}

TEST_F(DecodingJournalTest, SuspectsAreTriedOneAtATime) {
    dieDecoding({file("a"), file("b"), file("c")});
    DecodingJournal journal(folder());
    std::atomic<int> atOnce = 0;
    std::atomic<int> most = 0;
    std::atomic<int> decoded = 0;
    std::vector<std::thread> threads;
    for (const auto* const name : {"a", "b", "c"}) {
        threads.emplace_back([&, name] {
            static_cast<void>(journal.decode(file(name), [&] {
                most = std::max(most.load(), ++atOnce);
                std::this_thread::yield();
                --atOnce;
                ++decoded;
                return answer;
            }));
        });
    }
    for (auto& thread : threads) {
        thread.join();
    }
    EXPECT_EQ(decoded, 3);
    EXPECT_EQ(most, 1);
    EXPECT_FALSE(std::filesystem::exists(files_.at("decoding/suspects")));
}

TEST_F(DecodingJournalTest, KnownFilesAreDecodedAtOnceByManyThreads) {
    DecodingJournal journal(folder());
    ASSERT_TRUE(decodes(journal, file("a")));
    std::mutex mutex;
    std::condition_variable changed;
    int inside = 0;
    bool together = true;
    std::vector<std::thread> threads;
    for (int i = 0; i < 4; ++i) {
        threads.emplace_back([&] {
            static_cast<void>(journal.decode(file("a"), [&] {
                std::unique_lock lock(mutex);
                ++inside;
                changed.notify_all();
                together &= changed.wait_for(lock, std::chrono::seconds(30), [&] { return inside == 4; });
                return answer;
            }));
        });
    }
    for (auto& thread : threads) {
        thread.join();
    }
    EXPECT_TRUE(together);
}

TEST_F(DecodingJournalTest, AnotherLivingProcessIsNotTakenForADeadOne) {
    std::array<int, 2> began{};
    std::array<int, 2> mayEnd{};
    ASSERT_EQ(::pipe(began.data()), 0);
    ASSERT_EQ(::pipe(mayEnd.data()), 0);
    const auto child = ::fork();
    if (child == 0) {
        DecodingJournal journal(folder());
        static_cast<void>(journal.decode(file("slow"), [&] {
            char byte = 'x';
            static_cast<void>(::write(began[1], &byte, 1) + ::read(mayEnd[0], &byte, 1));
            return answer;
        }));
        ::_exit(0);
    }
    char byte = 0;
    ASSERT_EQ(::read(began[0], &byte, 1), 1);
    EXPECT_TRUE(decodes(file("slow")));
    EXPECT_TRUE(decodes(file("other")));
    ASSERT_EQ(::write(mayEnd[1], &byte, 1), 1);
    ASSERT_EQ(::waitpid(child, nullptr, 0), child);
    EXPECT_TRUE(decodes(file("slow")));
    for (const int end : {began[0], began[1], mayEnd[0], mayEnd[1]}) {
        ::close(end);
    }
}

TEST_F(DecodingJournalTest, WithoutAFolderEverythingIsDecoded) {
    files_.write("decoding", "a file where the folder should be");
    EXPECT_TRUE(decodes(file("a")));
}

TEST_F(DecodingJournalTest, AListThatMakesNoSenseIsNoList) {
    files_.write("decoding/suspects", QByteArray(100'000, '\xFF'));
    EXPECT_TRUE(decodes(file("a")));
}
