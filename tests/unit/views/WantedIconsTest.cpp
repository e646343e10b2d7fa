#include "views/WantedIcons.h"

#include "data/IconCache.h"
#include "support/ModelFixture.h"
#include "support/PlatformFakes.h"
#include "views/TileModel.h"

#include <cmath>

using namespace amberquill;

namespace {

// Ten pages of applications, and a cache that keeps only the needed icons.
class WantedIconsTest : public ModelFixture {
protected:
    void SetUp() override {
        ModelFixture::SetUp();
        shownWith(10 * perPage);
        model_->setPresented(true);
        cache_.serveFrom(&icons_, &queue_);
        tiles_ = std::make_unique<TileModel>(*model_, queue_);
        wanted_ = std::make_unique<WantedIcons>(*model_, *tiles_, cache_);
    }

    void TearDown() override {
        wanted_.reset();
        tiles_.reset();
        ModelFixture::TearDown();
    }

    [[nodiscard]] int edge() const { return static_cast<int>(std::lround(tiles_->layout().icon.width())); }

    // Whether all icons of a page are decoded.
    [[nodiscard]] bool isDecoded(int page) const {
        int known = 0;
        for (int slot = 0; slot < perPage; ++slot) {
            const int index = page * perPage + slot;
            known +=
                cache_.isKnown(*model_->items()[static_cast<std::size_t>(index)].asApp(), edge()) ? 1 : 0;
        }
        return known == perPage;
    }

    void turnTo(int page) {
        model_->goToPage(page);
        queue_.runPosted();
    }

    static constexpr int perPage = 35;
    ColourIcons icons_;
    IconCache cache_{0};
    std::unique_ptr<TileModel> tiles_;
    std::unique_ptr<WantedIcons> wanted_;
};

} // namespace

TEST_F(WantedIconsTest, TheIconsOfTheNeighboursAreDecodedWhenAPageIsTurned) {
    turnTo(4);
    EXPECT_TRUE(isDecoded(3));
    EXPECT_TRUE(isDecoded(4));
    EXPECT_TRUE(isDecoded(5));
    EXPECT_FALSE(isDecoded(6));
}

TEST_F(WantedIconsTest, IconsOfNearPagesAreKeptAndDecodedAgainWhenTheyComeNear) {
    for (int page = 1; page < 10; ++page) {
        turnTo(page);
    }
    EXPECT_TRUE(isDecoded(8) && isDecoded(9));
    EXPECT_FALSE(isDecoded(4)) << "far away by now";
    turnTo(5);
    EXPECT_TRUE(isDecoded(4) && isDecoded(5) && isDecoded(6));
    EXPECT_FALSE(isDecoded(8));
}

TEST_F(WantedIconsTest, TheFirstPagesIconsAreKeptForTheNextStart) {
    turnTo(1);
    ASSERT_TRUE(isDecoded(0));
    turnTo(9);
    cache_.shrink();
    EXPECT_TRUE(isDecoded(0));
}

TEST_F(WantedIconsTest, TheIconsOfThePageBeneathASearchAreKept) {
    turnTo(4);
    model_->setSearchText(QStringLiteral("App 3"));
    queue_.runPosted();
    ASSERT_TRUE(model_->isSearching());
    ASSERT_EQ(model_->page(), 0);
    cache_.shrink();
    EXPECT_TRUE(isDecoded(3) && isDecoded(4) && isDecoded(5));
}

TEST_F(WantedIconsTest, NothingIsDecodedForAHiddenLauncher) {
    model_->setPresented(false);
    turnTo(4);
    EXPECT_FALSE(isDecoded(4) || isDecoded(5));
}
