#include "platform/common/WriteBehind.h"

#include "support/LogRecorder.h"
#include "support/ManualQueue.h"
#include "support/MemoryFileSystem.h"

#include <gtest/gtest.h>
#include <optional>

using namespace amberquill;
using namespace Qt::StringLiterals;

namespace {

class WriteBehindTest : public testing::Test {
protected:
    [[nodiscard]] std::optional<QByteArray> held() const { return files_.file(path_); }

    const QString path_ = u"/data/file"_s;
    ManualQueue queue_;
    MemoryFileSystem files_;
    std::optional<WriteBehind> file_{std::in_place, queue_, files_, path_, 1000};
};

} // namespace

TEST_F(WriteBehindTest, ChangesInOneTurnAreOneWriteOfTheLast) {
    file_->save("one");
    file_->save("two");
    EXPECT_EQ(held(), std::nullopt);
    queue_.runPosted();
    EXPECT_EQ(held(), "two");
    EXPECT_EQ(files_.writes(), 1);
    EXPECT_EQ(queue_.waiting(), 0U) << "nothing is left to do";
}

TEST_F(WriteBehindTest, AFlushWritesAtOnceAndNoOtherWriteFollows) {
    file_->save("one");
    file_->flush();
    EXPECT_EQ(held(), "one");
    queue_.runPosted();
    EXPECT_EQ(files_.writes(), 1);
    file_->flush();
    EXPECT_EQ(files_.writes(), 1);
}

TEST_F(WriteBehindTest, UnchangedContentIsNotWrittenUnlessAnotherProgramChangedTheFile) {
    files_.addFile(path_, "one");
    file_->assumeHeld("one");
    file_->save("one");
    queue_.runPosted();
    EXPECT_EQ(files_.writes(), 0);
    files_.addFile(path_, "of others");
    file_->save("one");
    queue_.runPosted();
    EXPECT_EQ(held(), "one");
}

TEST_F(WriteBehindTest, ContentSavedDuringAWriteIsWrittenAfterIt) {
    file_->save("one");
    queue_.post([this] { file_->save("two"); }); // between the request and the write
    queue_.post([this] { queue_.post([this] { file_->save("three"); }); });
    queue_.runPosted();
    EXPECT_EQ(held(), "three");
    EXPECT_EQ(queue_.waiting(), 0U);
}

TEST_F(WriteBehindTest, AFileOfUnknownContentIsSetAside) {
    files_.addFile(path_, "unknown");
    file_->save("one");
    queue_.runPosted();
    EXPECT_EQ(held(), "one");
    EXPECT_EQ(files_.file(path_ + u".unreadable-1"_s), "unknown");
}

TEST_F(WriteBehindTest, AFileThatCannotBeSetAsideStaysUntilItCan) {
    files_.addFile(path_, "unknown");
    files_.refuseSettingAside(true);
    file_->save("one");
    queue_.advance(3600);
    file_->flush();
    EXPECT_EQ(held(), "unknown");
    files_.refuseSettingAside(false);
    queue_.advance(300);
    EXPECT_EQ(held(), "one");
    EXPECT_EQ(files_.file(path_ + u".unreadable-1"_s), "unknown");
}

TEST_F(WriteBehindTest, AFailedWriteIsRetriedAfterPausesThatGrowToFiveMinutes) {
    files_.refuseWrites(true);
    file_->save("one");
    queue_.runPosted();
    int attempts = files_.refusedWrites();
    EXPECT_EQ(attempts, 1);
    for (const double pause : {1.0, 2.0, 4.0, 8.0, 16.0, 32.0, 64.0, 128.0, 256.0, 300.0, 300.0}) {
        queue_.advance(pause - 0.01);
        EXPECT_EQ(files_.refusedWrites(), attempts) << pause;
        queue_.advance(0.01);
        EXPECT_EQ(files_.refusedWrites(), ++attempts) << pause;
    }
    files_.refuseWrites(false);
    queue_.advance(300);
    EXPECT_EQ(held(), "one");
    EXPECT_EQ(queue_.waiting(), 0U) << "what is written is not tried again";
}

TEST_F(WriteBehindTest, ANewChangeIsWrittenAtOnceAndResetsThePauses) {
    files_.refuseWrites(true);
    file_->save("one");
    queue_.advance(600);
    const int attempts = files_.refusedWrites();
    file_->save("two");
    queue_.runPosted();
    EXPECT_EQ(files_.refusedWrites(), attempts + 1);
    files_.refuseWrites(false);
    queue_.advance(1);
    EXPECT_EQ(held(), "two");
}

TEST_F(WriteBehindTest, ARetryCanBeRequestedAndDoesNothingWhenNothingIsUnsaved) {
    file_->tryAgain();
    EXPECT_EQ(queue_.waiting(), 0U);
    files_.refuseWrites(true);
    file_->save("one");
    queue_.advance(600);
    files_.refuseWrites(false);
    file_->tryAgain();
    queue_.runPosted();
    EXPECT_EQ(held(), "one");
    EXPECT_EQ(queue_.timers(), 0U);
}

TEST_F(WriteBehindTest, AFailedFlushIsRetried) {
    files_.refuseWrites(true);
    file_->save("one");
    file_->flush();
    files_.refuseWrites(false);
    queue_.advance(1);
    EXPECT_EQ(held(), "one");
}

TEST_F(WriteBehindTest, APathThatIsNotAFileIsNotWrittenAndLoggedOnce) {
    files_.addFolder(path_);
    const std::string log = debugLog("amberquill.saving", [this] {
        file_->save("one");
        queue_.advance(3600);
        file_->save("two");
        file_->flush();
    });
    EXPECT_EQ(log, "amberquill.saving: \"/data/file\" is no regular file: nothing is saved there\n");
    EXPECT_EQ(files_.paths(), QStringList());
}

TEST_F(WriteBehindTest, WithoutTheDebugLogNothingIsPrinted) {
    files_.addFolder(path_);
    testing::internal::CaptureStderr();
    file_->save("one");
    queue_.advance(3600);
    EXPECT_EQ(testing::internal::GetCapturedStderr(), "");
}

TEST_F(WriteBehindTest, AFileThatIsSetAsideIsLogged) {
    files_.addFile(path_, "unknown");
    const std::string log = debugLog("amberquill.saving", [this] {
        file_->save("one");
        queue_.runPosted();
    });
    EXPECT_EQ(log, "amberquill.saving: \"/data/file\" is set aside\n");
}

TEST_F(WriteBehindTest, SavedContentIsWrittenOnceAfterItsOwnerIsDestroyed) {
    file_->save("one");
    file_.reset();
    queue_.runPosted();
    EXPECT_EQ(held(), "one");
    files_.refuseWrites(true);
    file_.emplace(queue_, files_, path_, 1000);
    file_->assumeHeld("one");
    file_->save("two");
    queue_.runPosted();
    file_.reset();
    files_.refuseWrites(false);
    queue_.advance(3600);
    EXPECT_EQ(held(), "one");
}

TEST_F(WriteBehindTest, AFlushWritesThePrecedingFileFirst) {
    const QString otherPath = u"/data/other"_s;
    WriteBehind other(queue_, files_, otherPath, 1000);
    file_->writeAfter(other);
    file_->save("later");
    other.save("earlier");
    files_.failWritesAfter(1);
    file_->flush();
    EXPECT_EQ(files_.file(otherPath), "earlier");
    EXPECT_EQ(held(), std::nullopt);
}
