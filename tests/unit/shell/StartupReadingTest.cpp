#include "shell/StartupReading.h"

#include "data/LayoutCoding.h"
#include "support/ManualQueue.h"
#include "support/MemoryFileSystem.h"
#include "support/WaitUntil.h"

#include <atomic>
#include <gtest/gtest.h>
#include <semaphore>

using namespace amberquill;
using namespace Qt::StringLiterals;

namespace {

const QString layoutFile = u"/data/Amberquill/layout.json"_s;
const QString namesFile = u"/cache/Amberquill/names"_s;
const QString iconsFile = u"/cache/Amberquill/icons"_s;

// Reading one of its files waits until the test lets it.
class SlowFileSystem final : public MemoryFileSystem {
public:
    using MemoryFileSystem::readFile;
    [[nodiscard]] std::optional<QByteArray> readFile(const QString& path, qint64 limit,
                                                     std::error_code& error) const override {
        if (path == slowFile) {
            released.acquire();
        }
        return MemoryFileSystem::readFile(path, limit, error);
    }

    QString slowFile;
    mutable std::counting_semaphore<> released{0};
};

class StartupReadingTest : public testing::Test {
protected:
    void SetUp() override {
        QImage icon(16, 16, QImage::Format_ARGB32_Premultiplied);
        icon.fill(Qt::red);
        files_.addFile(layoutFile, encodeItems({LaunchItem::app(u"/Applications/1.app"_s)}));
        files_.addFile(namesFile, encodeNames(u"en"_s, {{u"/Applications/1.app"_s, u"One"_s}}));
        files_.addFile(iconsFile, encodeIcons({{.path = u"/Applications/1.app"_s, .image = icon}}));
    }

    // All threads have ended: none uses the reading any more.
    void TearDown() override {
        files_.released.release();
        EXPECT_TRUE(waitUntil([this] { return !reading_->isUnderWay(); }));
    }

    void begin() {
        reading_ = std::make_unique<StartupReading>(StartupReading::Services{
            .files = files_,
            .applicationSupport = u"/data"_s,
            .caches = u"/cache"_s,
            .language = u"en"_s,
            .scan =
                [this] {
                    const int number = ++scans_;
                    return ScanResult{
                        std::vector<AppInfo>{{u"/Applications/1.app"_s, QString::number(number)}}};
                },
            .prepareDecoding = [this] { ++preparations_; },
        });
    }

    static QDeadlineTimer whenever() { return QDeadlineTimer(QDeadlineTimer::Forever); }

    SlowFileSystem files_;
    std::atomic<int> scans_ = 0;
    std::atomic<int> preparations_ = 0;
    std::unique_ptr<StartupReading> reading_;
};

} // namespace

TEST_F(StartupReadingTest, TheLayoutAndTheCachesAreRead) {
    begin();
    const StartupData data = reading_->takeBy(whenever());
    EXPECT_FALSE(data.layoutIsLate);
    EXPECT_EQ(data.layout.items, LaunchItems{LaunchItem::app(u"/Applications/1.app"_s)});
    EXPECT_EQ(data.names.value(u"/Applications/1.app"_s), u"One"_s);
    EXPECT_EQ(data.icons.size(), 1U);
}

TEST_F(StartupReadingTest, WithCachedNamesAndIconsNothingElseIsBegun) {
    begin();
    static_cast<void>(reading_->takeBy(whenever()));
    EXPECT_EQ(scans_, 0);
    EXPECT_EQ(preparations_, 0);
}

TEST_F(StartupReadingTest, WithoutCachedNamesTheFirstScanIsBegunAndUsedOnce) {
    files_.remove(namesFile);
    begin();
    static_cast<void>(reading_->takeBy(whenever()));
    EXPECT_EQ(scans_, 1);
    EXPECT_EQ(reading_->scan().apps.front().name, u"1"_s);
    EXPECT_EQ(scans_, 1);
    EXPECT_EQ(reading_->scan().apps.front().name, u"2"_s);
}

TEST_F(StartupReadingTest, WithoutCachedIconsTheirDecodingIsPrepared) {
    files_.remove(iconsFile);
    begin();
    static_cast<void>(reading_->takeBy(whenever()));
    EXPECT_EQ(preparations_, 1);
}

TEST_F(StartupReadingTest, ALateLayoutIsDeliveredLater) {
    files_.slowFile = layoutFile;
    begin();
    const StartupData data = reading_->takeBy(QDeadlineTimer(0));
    EXPECT_TRUE(data.layoutIsLate);
    EXPECT_FALSE(data.layout.items.has_value());
    EXPECT_TRUE(reading_->isUnderWay());
    ManualQueue queue;
    const Context context;
    std::optional<StoredLayout> late;
    reading_->whenLayoutIsThere(queue, context, [&late](StoredLayout layout) { late = std::move(layout); });
    files_.released.release();
    ASSERT_TRUE(waitUntil([this] { return !reading_->isUnderWay(); }));
    queue.runPosted();
    ASSERT_TRUE(late.has_value());
    EXPECT_EQ(late->items, LaunchItems{LaunchItem::app(u"/Applications/1.app"_s)});
}

TEST_F(StartupReadingTest, LateCachesAreGivenUp) {
    files_.slowFile = namesFile;
    begin();
    const StartupData data = reading_->takeBy(QDeadlineTimer(0));
    EXPECT_TRUE(data.names.isEmpty());
    EXPECT_TRUE(data.icons.empty());
    EXPECT_EQ(reading_->scan().apps.front().name, u"1"_s) << "a scan does not wait for them";
}
