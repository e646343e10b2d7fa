#include "platform/common/RootReaders.h"

#include "support/WaitUntil.h"

#include <atomic>
#include <gtest/gtest.h>
#include <semaphore>

using namespace amberquill;
using namespace Qt::StringLiterals;
using namespace std::chrono_literals;

namespace {

class RootReadersTest : public testing::Test {
protected:
    // Reads the roots with `readers`; the read of "/stalls" blocks until `answer_` is released.
    std::vector<QString> read(RootReaders& readers, const QStringList& roots) {
        std::vector<QString> found;
        const auto results = readers.readAll<QString>(
            u"names"_s, roots, [this](const QString& root, const RootReaders::GoOn& goOn) {
                ++readings_;
                goOn();
                if (root == u"/stalls") {
                    static_cast<void>(answer_.try_acquire_for(10s)); // a test that fails ends all the same
                }
                return root.toUpper();
            });
        for (const auto& result : results) {
            found.push_back(result ? *result : u"none"_s);
        }
        return found;
    }

    std::vector<QString> read(const QStringList& roots) { return read(readers_, roots); }

    RootReaders readers_{{.standstill = 20ms, .reading = 1h}};
    std::atomic<int> readings_ = 0;
    std::binary_semaphore answer_{0};
    std::binary_semaphore answered_{0};
};

} // namespace

TEST_F(RootReadersTest, AnswersAreInTheOrderOfTheRoots) {
    EXPECT_EQ(read({u"/a"_s, u"/b"_s}), (std::vector{u"/A"_s, u"/B"_s}));
    EXPECT_EQ(read({u"/b"_s}), std::vector{u"/B"_s});
    EXPECT_EQ(readings_, 3);
    EXPECT_TRUE(readers_.isIdle());
}

TEST_F(RootReadersTest, ARootThatTimesOutIsReadAgainOnlyAfterItHasAnswered) {
    readers_.setAnswered([this] { answered_.release(); });
    EXPECT_EQ(read({u"/stalls"_s, u"/a"_s}), (std::vector{u"none"_s, u"/A"_s}));
    EXPECT_EQ(read({u"/stalls"_s}), std::vector{u"none"_s});
    EXPECT_EQ(readings_, 2) << "a second reading was begun";
    EXPECT_FALSE(readers_.isIdle());
    answer_.release();
    ASSERT_TRUE(answered_.try_acquire_for(10s));
    EXPECT_EQ(read({u"/stalls"_s, u"/a"_s}), (std::vector{u"/STALLS"_s, u"/A"_s}));
    EXPECT_EQ(readings_, 3) << "what it came to was not used";
    EXPECT_TRUE(readers_.isIdle());
}

TEST_F(RootReadersTest, AReadingThatTakesTooLongIsGivenUpWhateverItsProgress) {
    RootReaders readers({.standstill = 1h, .reading = 20ms});
    EXPECT_EQ(read(readers, {u"/stalls"_s, u"/a"_s}), (std::vector{u"none"_s, u"/A"_s}));
    answer_.release();
    EXPECT_TRUE(waitUntil([&readers] { return readers.isIdle(); }));
}
