#include "platform/common/RootReaders.h"

#include <atomic>
#include <gtest/gtest.h>
#include <semaphore>

using namespace amberquill;
using namespace Qt::StringLiterals;
using namespace std::chrono_literals;

namespace {

class RootReadersTest : public testing::Test {
protected:
    // Reads the roots; the read of "/stalls" blocks until `answer_` is released.
    std::vector<QString> read(const QStringList& roots) {
        std::vector<QString> found;
        const auto results = readers_.readAll<QString>(
            u"names"_s, roots, [this](const QString& root, const RootReaders::GoOn& goOn) {
                ++readings_;
                goOn();
                if (root == u"/stalls") {
                    answer_.acquire();
                }
                return root.toUpper();
            });
        for (const auto& result : results) {
            found.push_back(result ? *result : u"none"_s);
        }
        return found;
    }

    RootReaders readers_{20ms};
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
