#include "shell/LiveRefresh.h"

#include "support/ModelFixture.h"
#include "support/PlatformFakes.h"

using namespace amberquill;
using namespace Qt::StringLiterals;

namespace {

class LiveRefreshTest : public ModelFixture {
protected:
    void SetUp() override {
        ModelFixture::SetUp();
        shownWith(3);
        live_ = std::make_unique<LiveRefresh>(
            LiveRefresh::Services{*model_, queue_, watcher_, [this] { ++retries_; }});
        live_->watch({u"/Applications"_s});
    }

    void TearDown() override {
        live_.reset();
        ModelFixture::TearDown();
    }

    ManualFolderWatcher watcher_;
    int retries_ = 0;
    std::unique_ptr<LiveRefresh> live_;
};

} // namespace

TEST_F(LiveRefreshTest, TheGivenFoldersAreWatched) {
    EXPECT_EQ(watcher_.watched, QStringList{u"/Applications"_s});
}

TEST_F(LiveRefreshTest, AChangeStartsAScan) {
    installed_ = apps(5);
    watcher_.change();
    queue_.runPosted();
    EXPECT_EQ(model_->items().size(), 5U);
}

TEST_F(LiveRefreshTest, AChangeDuringAScanStartsAnotherScan) {
    const int scans = scans_;
    model_->refreshApps();
    watcher_.change();
    queue_.runPosted();
    EXPECT_EQ(scans_, scans + 2);
    EXPECT_FALSE(model_->isScanning());
}

TEST_F(LiveRefreshTest, MissingIconsAreLookedForThreeTimes) {
    watcher_.change();
    queue_.runPosted();
    EXPECT_EQ(retries_, 0);
    queue_.advance(1.1);
    EXPECT_EQ(retries_, 1);
    queue_.advance(3);
    EXPECT_EQ(retries_, 2);
    queue_.advance(60);
    EXPECT_EQ(retries_, 3);
    EXPECT_EQ(queue_.waiting(), 0U) << "no timer is left";
}
