#include "views/TextureItem.h"

#include <QCoreApplication>
#include <QQuickWindow>
#include <cmath>
#include <gtest/gtest.h>

namespace amberquill {

namespace {

// Columns of pixels, white and black in turn.
class Stripes final : public TextureItem {
public:
    using TextureItem::forgetPainted;
    using TextureItem::painted;
    using TextureItem::repaint;

protected:
    Painted paintTexture(double devicePixelRatio) override {
        QImage image((size() * devicePixelRatio).toSize(), QImage::Format_RGB32);
        for (int y = 0; y < image.height(); ++y) {
            for (int x = 0; x < image.width(); ++x) {
                image.setPixel(x, y, x % 2 == 0 ? 0xffffffff : 0xff000000);
            }
        }
        return {image, QRectF({}, size())};
    }
};

class DrawnTexture : public testing::Test {
protected:
    DrawnTexture() {
        window_.resize(100, 20);
        window_.setColor(Qt::black);
        frame_.setParentItem(window_.contentItem());
        stripes_.setParentItem(&frame_);
        stripes_.setSize(QSizeF(40, 20));
        window_.show();
    }

    // How many pixels are neither black nor white; blending in eight bits may miss these by two levels.
    int greys() {
        QCoreApplication::processEvents();
        const QImage picture = window_.grabWindow();
        int count = 0;
        for (int x = 0; x < picture.width(); ++x) {
            const int value = qGray(picture.pixel(x, picture.height() / 2));
            count += value > 2 && value < 253 ? 1 : 0;
        }
        return count;
    }

    int whites() {
        QCoreApplication::processEvents();
        const QImage picture = window_.grabWindow();
        int count = 0;
        for (int x = 0; x < picture.width(); ++x) {
            count += qGray(picture.pixel(x, picture.height() / 2)) > 252 ? 1 : 0;
        }
        return count;
    }

    // The number of white pixels while the stripes are seen: every second column.
    [[nodiscard]] int all() const {
        return static_cast<int>(std::lround(stripes_.width() / 2 * window_.effectiveDevicePixelRatio()));
    }

    QQuickWindow window_;
    QQuickItem frame_;
    Stripes stripes_;
};

} // namespace

TEST_F(DrawnTexture, IsCopiedPixelForPixelWhereItStands) {
    EXPECT_EQ(greys(), 0);
    stripes_.setX(7);
    EXPECT_EQ(greys(), 0);
}

TEST_F(DrawnTexture, IsSmoothedWhileItOrWhatHoldsItIsScaled) {
    greys();
    frame_.setScale(1.3);
    EXPECT_GT(greys(), 20);
    frame_.setScale(1);
    stripes_.setScale(0.9);
    EXPECT_GT(greys(), 10);
}

TEST_F(DrawnTexture, IsSharpAgainWhenTheScalingIsOver) {
    frame_.setScale(1.3);
    greys();
    frame_.setScale(1);
    EXPECT_EQ(greys(), 0);
}

TEST_F(DrawnTexture, AnItemFreedInAHiddenWindowIsDrawnAgainOnceItIsRepainted) {
    for (int time = 0; time < 2; ++time) {
        EXPECT_EQ(whites(), all());
        window_.hide();
        stripes_.forgetPainted();
        EXPECT_TRUE(stripes_.painted().image.isNull());
        window_.show();
        EXPECT_EQ(whites(), 0);
        stripes_.repaint();
    }
    EXPECT_EQ(whites(), all());
}

TEST_F(DrawnTexture, AnItemMayBeFreedBeforeItIsDrawnAndOutsideOfAWindow) {
    Stripes alone;
    alone.forgetPainted();
    EXPECT_EQ(whites(), all());
    stripes_.setParentItem(nullptr);
    stripes_.forgetPainted();
    EXPECT_EQ(whites(), 0);
}

TEST_F(DrawnTexture, AnItemRepaintedInAHiddenWindowIsDrawnInTheFirstFrame) {
    EXPECT_EQ(whites(), all());
    window_.hide();
    stripes_.forgetPainted();
    stripes_.repaint();
    window_.show();
    EXPECT_EQ(whites(), all());
}

TEST_F(DrawnTexture, AnItemRemovedFromAHiddenWindowFreesItsTexture) {
    EXPECT_EQ(whites(), all());
    window_.hide();
    const QImage kept = stripes_.painted().image;
    stripes_.setParentItem(nullptr);
    stripes_.forgetPainted();
    EXPECT_TRUE(kept.isDetached()) << "somebody else still holds the picture";
}

} // namespace amberquill
