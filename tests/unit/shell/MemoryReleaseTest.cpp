#include "shell/MemoryRelease.h"

#include "support/ModelFixture.h"

using namespace amberquill;

namespace {

class MemoryReleaseTest : public ModelFixture {
protected:
    void SetUp() override {
        ModelFixture::SetUp();
        shownWith(3);
        memory_ = std::make_unique<MemoryRelease>(*model_, queue_, [this] { ++releases_; });
        model_->setPresented(true);
    }

    void TearDown() override {
        memory_.reset();
        ModelFixture::TearDown();
    }

    std::unique_ptr<MemoryRelease> memory_;
    int releases_ = 0;
};

} // namespace

TEST_F(MemoryReleaseTest, MemoryIsReleasedOnceTheLauncherHasBeenHiddenForAWhile) {
    model_->setPresented(false);
    queue_.advance(2.9);
    EXPECT_EQ(releases_, 0);
    queue_.advance(0.2);
    EXPECT_EQ(releases_, 1);
    queue_.advance(60);
    EXPECT_EQ(releases_, 1) << "no timer runs afterwards";
}

TEST_F(MemoryReleaseTest, NothingIsReleasedWhileTheLauncherIsShown) {
    queue_.advance(60);
    model_->setPresented(false);
    queue_.advance(2);
    model_->setPresented(true);
    queue_.advance(60);
    EXPECT_EQ(releases_, 0);
}

TEST_F(MemoryReleaseTest, MemoryIsReleasedAgainAfterAScanOfTheHiddenLauncher) {
    model_->setPresented(false);
    queue_.advance(10);
    model_->refreshApps();
    queue_.runPosted();
    queue_.advance(2.9);
    EXPECT_EQ(releases_, 1);
    queue_.advance(0.2);
    EXPECT_EQ(releases_, 2);
}
