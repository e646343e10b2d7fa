#include "platform/linux/windows/wayland/blur/BlurBehind.h"

#include "MockBlurCompositor.h"
#include "support/Watchdog.h"

#include <QDeadlineTimer>
#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <optional>
#include <sys/socket.h>
#include <wayland-client-core.h>
#include <wayland-client-protocol.h>

using namespace amberquill;
using namespace amberquill::desktop;
using testing::ElementsAre;
using testing::IsEmpty;

namespace {

class BlurBehindTest : public testing::Test {
protected:
    void begin() {
        events_.emplace(compositor_.client());
        globals_.emplace(*events_);
        blur_.emplace(*globals_);
        follow();
    }

    // One round each for the globals, their binding and their capabilities.
    void follow() {
        for (int time = 0; time < 2; ++time) {
            compositor_.exchange();
            events_->handle();
            blur_->follow();
        }
        compositor_.exchange();
    }

    std::vector<std::string> cover(wl_surface* surface) {
        blur_->cover(surface);
        compositor_.exchange();
        return compositor_.takeRequests();
    }

    std::string named(const std::string& protocol, wl_surface* surface) {
        return protocol + " for " + std::to_string(wl_proxy_get_id(reinterpret_cast<wl_proxy*>(surface)));
    }

    MockBlurCompositor compositor_;
    std::optional<EventQueue> events_;
    std::optional<Globals> globals_;
    std::optional<BlurBehind> blur_;
};

TEST_F(BlurBehindTest, WithoutAProtocolNothingIsRequested) {
    begin();
    EXPECT_FALSE(blur_->isOffered());
    EXPECT_THAT(cover(compositor_.makeSurface()), IsEmpty());
}

TEST_F(BlurBehindTest, KwinsProtocolBlursBehindTheWholeSurface) {
    compositor_.offerKwins();
    begin();
    EXPECT_TRUE(blur_->isOffered());
    wl_surface* const surface = compositor_.makeSurface();
    EXPECT_THAT(cover(surface), ElementsAre(named("kwin's", surface), "everywhere", "commit"));
}

TEST_F(BlurBehindTest, TheGeneralProtocolBlursBehindTheWholeSurface) {
    compositor_.offerGeneral(true);
    begin();
    EXPECT_TRUE(blur_->isOffered());
    EXPECT_FALSE(blur_->isUndecided());
    wl_surface* const surface = compositor_.makeSurface();
    EXPECT_THAT(cover(surface), ElementsAre(named("general", surface), "everywhere"));
}

TEST_F(BlurBehindTest, TheGeneralProtocolIsPreferred) {
    compositor_.offerKwins();
    compositor_.offerGeneral(true);
    begin();
    wl_surface* const surface = compositor_.makeSurface();
    EXPECT_THAT(cover(surface), ElementsAre(named("general", surface), "everywhere"));
}

TEST_F(BlurBehindTest, AProtocolWithoutBlurIsNotUsed) {
    compositor_.offerKwins();
    compositor_.offerGeneral(false);
    begin();
    EXPECT_TRUE(blur_->isOffered());
    wl_surface* const surface = compositor_.makeSurface();
    EXPECT_THAT(cover(surface), ElementsAre(named("kwin's", surface), "everywhere", "commit"));
}

TEST_F(BlurBehindTest, TheBlurCapabilityMayChange) {
    compositor_.offerGeneral(false);
    begin();
    EXPECT_FALSE(blur_->isOffered());
    EXPECT_FALSE(blur_->isUndecided());
    compositor_.sayWhetherItBlurs(true);
    follow();
    EXPECT_TRUE(blur_->isOffered());
    compositor_.sayWhetherItBlurs(false);
    follow();
    EXPECT_FALSE(blur_->isOffered());
    EXPECT_THAT(cover(compositor_.makeSurface()), IsEmpty());
}

TEST_F(BlurBehindTest, AnEffectStaysUntilTheNextSurfaceIsCovered) {
    compositor_.offerKwins();
    begin();
    static_cast<void>(cover(compositor_.makeSurface()));
    follow();
    EXPECT_THAT(compositor_.takeRequests(), IsEmpty());
    wl_surface* const next = compositor_.makeSurface();
    EXPECT_THAT(cover(next), ElementsAre("release", named("kwin's", next), "everywhere", "commit"));
}

TEST_F(BlurBehindTest, ASurfaceCoveredAgainNeverHasTwoEffects) {
    compositor_.offerGeneral(true);
    begin();
    wl_surface* const surface = compositor_.makeSurface();
    static_cast<void>(cover(surface));
    EXPECT_THAT(cover(surface), ElementsAre("destroy", named("general", surface), "everywhere"));
}

TEST_F(BlurBehindTest, FollowsAGlobalThatIsRemovedAndAddedAgain) {
    compositor_.offerKwins();
    begin();
    for (int time = 0; time < 2; ++time) {
        compositor_.withdrawKwins();
        follow();
        EXPECT_FALSE(blur_->isOffered());
        compositor_.offerKwins();
        follow();
        EXPECT_TRUE(blur_->isOffered());
    }
    wl_surface* const surface = compositor_.makeSurface();
    EXPECT_THAT(cover(surface), ElementsAre(named("kwin's", surface), "everywhere", "commit"));
}

TEST_F(BlurBehindTest, FollowsTheGeneralGlobalToo) {
    compositor_.offerGeneral(true);
    begin();
    compositor_.withdrawGeneral();
    follow();
    EXPECT_FALSE(blur_->isOffered());
    compositor_.offerGeneral(true);
    follow();
    EXPECT_TRUE(blur_->isOffered());
}

TEST_F(BlurBehindTest, TheEffectOutlivesTheGlobal) {
    compositor_.offerKwins();
    begin();
    static_cast<void>(cover(compositor_.makeSurface()));
    compositor_.withdrawKwins();
    follow();
    EXPECT_THAT(compositor_.takeRequests(), IsEmpty());
    EXPECT_THAT(cover(nullptr), ElementsAre("release"));
}

TEST_F(BlurBehindTest, AHangingCompositorIsNotWaitedFor) {
    begin();
    const Watchdog watchdog("a compositor that does not answer is waited for", [this] {
        ::shutdown(wl_display_get_fd(compositor_.client()), SHUT_RDWR); // the connection is closed
    });
    const QDeadlineTimer deadline(std::chrono::milliseconds(5));
    EXPECT_FALSE(events_->roundTrip(deadline));
    EXPECT_TRUE(deadline.hasExpired()) << "given up before its time";
}

} // namespace
