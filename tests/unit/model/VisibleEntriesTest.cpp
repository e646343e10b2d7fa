#include "model/VisibleEntries.h"

#include "support/NumberedItems.h"

#include <gtest/gtest.h>

using namespace amberquill;

namespace {

const GridMetrics page{{1500, 892}, 7, 5}; // cells of 180 × 140 from (120, 120)

} // namespace

TEST(PageCount, IsRoundedUpAndAtLeastOne) {
    EXPECT_EQ(pageCount(0, 35), 1);
    EXPECT_EQ(pageCount(1, 35), 1);
    EXPECT_EQ(pageCount(35, 35), 1);
    EXPECT_EQ(pageCount(36, 35), 2);
    EXPECT_EQ(pageCount(10'000, 35), 286);
}

TEST(VisibleEntries, ThereAreNoneBeforeTheContentHasAWidth) {
    EXPECT_TRUE(visibleEntries(numberedApps(3), {{0, 892}, 7, 5}, 0, 0).empty());
}

TEST(VisibleEntries, AreThoseOfThePageAndItsNeighboursInOrder) {
    const auto entries = visibleEntries(numberedApps(35 * 5), page, 2, 0);
    ASSERT_EQ(entries.size(), 105U);
    for (std::size_t i = 0; i < entries.size(); ++i) {
        EXPECT_EQ(entries[i].index, 35 + static_cast<int>(i));
        EXPECT_EQ(*entries[i].item.asApp(), QString::number(entries[i].index));
    }
}

TEST(VisibleEntries, TheFirstPageHasNoneBeforeItAndTheLastNoneAfterIt) {
    EXPECT_EQ(visibleEntries(numberedApps(35 * 5), page, 0, 0).size(), 70U);
    EXPECT_EQ(visibleEntries(numberedApps(35 * 4 + 3), page, 4, 0).size(), 38U);
    EXPECT_EQ(visibleEntries(numberedApps(0), page, 0, 0).size(), 0U);
}

TEST(VisibleEntries, EachPageIsAContentWidthFromTheNext) {
    const auto entries = visibleEntries(numberedApps(35 * 3), page, 1, 0);
    EXPECT_EQ(entries[0].center, QPointF(210 - 1500, 190));
    EXPECT_EQ(entries[35].center, QPointF(210, 190));
    EXPECT_EQ(entries[35 + 8].center, QPointF(390, 330));
    EXPECT_EQ(entries[70].center, QPointF(210 + 1500, 190));
}

TEST(VisibleEntries, TheScrollOffsetShiftsThemAll) {
    const auto rest = visibleEntries(numberedApps(80), page, 1, 0);
    const auto moved = visibleEntries(numberedApps(80), page, 1, -37.5);
    ASSERT_EQ(rest.size(), moved.size());
    for (std::size_t i = 0; i < rest.size(); ++i) {
        EXPECT_EQ(moved[i].center, rest[i].center + QPointF(-37.5, 0));
    }
}
