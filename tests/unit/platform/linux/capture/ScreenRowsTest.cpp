#include "platform/linux/capture/ScreenRows.h"

#include <array>
#include <gtest/gtest.h>

using namespace amberquill;
using namespace amberquill::desktop;

TEST(ScreenRows, KeepTheFullImageBesideTheMeansOnRequest) {
    ScreenRows rows({2, 2}, 2, true);
    // The highest byte does not matter.
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

TEST(ScreenRows, HaveNoFullImageWithoutARequest) {
    ScreenRows rows({1, 1}, 1, false);
    rows.add(std::array<QRgb, 1>{0x00FFFFFF}.data());
    EXPECT_FALSE(rows.picture().shrunk.isNull());
    EXPECT_TRUE(rows.picture().whole.isNull());
}

TEST(ScreenRows, AreNullWhileRowsAreMissing) {
    ScreenRows rows({1, 2}, 1, true);
    rows.add(std::array<QRgb, 1>{0x00FFFFFF}.data());
    EXPECT_TRUE(rows.picture().shrunk.isNull());
    EXPECT_TRUE(rows.picture().whole.isNull());
}

TEST(ScreenRows, MissingRowsAreFilledFromAnotherPicture) {
    ScreenRows rows({2, 8}, 2, true);
    const std::array<QRgb, 2> read{0x00102030, 0x00102030};
    for (int y = 0; y < 3; ++y) {
        rows.add(read.data());
    }
    EXPECT_FALSE(rows.isComplete());
    QImage other(1, 1, QImage::Format_RGB32);
    other.fill(0xFF908070);
    const ScreenPicture picture = rows.pictureOver(other);
    ASSERT_EQ(picture.shrunk.size(), QSize(1, 4));
    EXPECT_EQ(picture.shrunk.pixel(0, 0), 0xFF102030U);
    EXPECT_EQ(picture.shrunk.pixel(0, 1), 0xFF908070U) << "half of it is there";
    EXPECT_EQ(picture.shrunk.pixel(0, 3), 0xFF908070U);
    ASSERT_EQ(picture.whole.size(), QSize(2, 8));
    EXPECT_EQ(picture.whole.pixel(1, 2), 0xFF102030U);
    EXPECT_EQ(picture.whole.pixel(0, 3), 0xFF908070U);
    EXPECT_EQ(picture.whole.pixel(1, 7), 0xFF908070U);
}

TEST(ScreenRows, WithoutAnotherPictureMissingRowsHaveTheMeanColour) {
    ScreenRows rows({2, 3}, 1, true);
    rows.add(std::array<QRgb, 2>{0x00000000, 0x00FFFFFF}.data());
    const ScreenPicture picture = rows.pictureOver({});
    EXPECT_EQ(picture.whole.pixel(0, 0), 0xFF000000U);
    EXPECT_NEAR(qRed(picture.whole.pixel(0, 2)), 0x80, 1);
    EXPECT_NEAR(qRed(picture.shrunk.pixel(1, 2)), 0x80, 1);
    EXPECT_TRUE(ScreenRows({2, 3}, 1, true).pictureOver({}).shrunk.isNull()) << "there is nothing";
}
