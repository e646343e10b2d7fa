#include "platform/linux/capture/ScreenRows.h"

#include <array>
#include <gtest/gtest.h>

using namespace amberquill;
using namespace amberquill::desktop;

TEST(ScreenRows, KeepTheWholeBesideTheMeansWhereItIsWanted) {
    ScreenRows rows({2, 2}, 2, true);
    // What stands in the highest byte does not matter.
    rows.add(std::array<QRgb, 2>{0x00102030, 0x7F302010}.data());
    rows.add(std::array<QRgb, 2>{0xFF102030, 0x00302010}.data());
    const ScreenPicture picture = rows.picture();
    ASSERT_EQ(picture.shrunk.size(), QSize(1, 1));
    EXPECT_EQ(picture.shrunk.pixel(0, 0), 0xFF202020U);
    ASSERT_EQ(picture.whole.size(), QSize(2, 2));
    const auto* line = reinterpret_cast<const QRgb*>(picture.whole.constScanLine(1));
    EXPECT_EQ(line[0], 0xFF102030U);
    EXPECT_EQ(line[1], 0xFF302010U);
}

TEST(ScreenRows, HaveNoWholeWhereItIsNotWanted) {
    ScreenRows rows({1, 1}, 1, false);
    rows.add(std::array<QRgb, 1>{0x00FFFFFF}.data());
    EXPECT_FALSE(rows.picture().shrunk.isNull());
    EXPECT_TRUE(rows.picture().whole.isNull());
}

TEST(ScreenRows, AreNothingWhileRowsAreMissing) {
    ScreenRows rows({1, 2}, 1, true);
    rows.add(std::array<QRgb, 1>{0x00FFFFFF}.data());
    EXPECT_TRUE(rows.picture().shrunk.isNull());
    EXPECT_TRUE(rows.picture().whole.isNull());
}
