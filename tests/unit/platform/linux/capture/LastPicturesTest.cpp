#include "platform/linux/capture/LastPictures.h"

#include <gtest/gtest.h>

using namespace amberquill;
using namespace amberquill::desktop;

namespace {

const ScreenArea left{QRect(0, 0, 800, 600), {}};
const ScreenArea right{QRect(800, 0, 800, 600), {}};

QImage plain(const QSize& size, QRgb colour) {
    QImage image(size, QImage::Format_RGB32);
    image.fill(colour);
    return image;
}

} // namespace

TEST(LastPictures, AreKeptForEachScreen) {
    LastPictures last;
    EXPECT_TRUE(last.of(left).isNull());
    last.keep(left, plain({80, 60}, 0xFF102030));
    last.keep(right, plain({80, 60}, 0xFF405060));
    last.keep(left, plain({80, 60}, 0xFF708090));
    EXPECT_EQ(last.of(left), plain({80, 60}, 0xFF708090));
    EXPECT_EQ(last.of(right), plain({80, 60}, 0xFF405060));
}

TEST(LastPictures, AreSmallForEveryScreenSize) {
    LastPictures last;
    last.keep(left, plain({480, 270}, 0xFF102030));
    EXPECT_EQ(last.of(left), plain({240, 135}, 0xFF102030));
}

TEST(LastPictures, OfARemovedScreenAreForgotten) {
    LastPictures last;
    last.keep(left, plain({8, 6}, 0xFF102030));
    last.keep(right, plain({8, 6}, 0xFF405060));
    last.forgetAllBut({right});
    EXPECT_TRUE(last.of(left).isNull());
    EXPECT_FALSE(last.of(right).isNull());
}
