#include "views/Brightness.h"

#include <QColor>
#include <gtest/gtest.h>

using namespace amberquill;

namespace {

QImage filled(const QColor& colour) {
    QImage image(2, 2, QImage::Format_ARGB32_Premultiplied);
    image.fill(colour);
    return image;
}

} // namespace

TEST(Brightness, DarkensEachComponentByTheSameAmount) {
    const QColor dark = withBrightness(filled(QColor(200, 100, 20)), -0.3).pixelColor(0, 0);
    EXPECT_NEAR(dark.red(), 200 - 76.5, 1);
    EXPECT_NEAR(dark.green(), 100 - 76.5, 1);
    EXPECT_EQ(dark.blue(), 0);
    EXPECT_EQ(dark.alpha(), 255);
}

TEST(Brightness, LeavesTransparencyAsItIs) {
    const QColor dark = withBrightness(filled(QColor(200, 100, 200, 128)), -0.3).pixelColor(1, 1);
    EXPECT_EQ(dark.alpha(), 128);
    EXPECT_NEAR(dark.red(), 200 - 76.5, 3);
    EXPECT_EQ(withBrightness(filled(Qt::transparent), -0.3).pixelColor(0, 0).alpha(), 0);
}

TEST(Brightness, ZeroIsTheImageItself) {
    const QImage image = filled(Qt::red);
    EXPECT_EQ(withBrightness(image, 0).cacheKey(), image.cacheKey());
}
