#include "window/MenuStyle.h"

#include <QAction>
#include <QActionGroup>
#include <QImage>
#include <QMenu>
#include <QPixmap>
#include <gtest/gtest.h>

using namespace amberquill;
using namespace Qt::StringLiterals;

namespace {

constexpr QColor picture(200, 0, 0);

class MenuStyleTest : public testing::Test {
protected:
    MenuStyleTest() {
        QPixmap pixmap(18, 12);
        pixmap.fill(picture);
        for (const QString& title : {u"first"_s, u"second"_s}) {
            QAction* action = menu_.addAction(QIcon(pixmap), title);
            action->setCheckable(true);
            group_.addAction(action);
        }
        menu_.actions().constFirst()->setChecked(true);
        MenuStyle::applyTo(menu_);
    }

    // The entry as it is drawn.
    QImage entry(int index) {
        menu_.adjustSize();
        return menu_.grab(menu_.actionGeometry(menu_.actions().at(index))).toImage();
    }

    static int columnsOfPicture(const QImage& image) {
        int columns = 0;
        for (int x = 0; x < image.width(); ++x) {
            columns += image.pixelColor(x, image.height() / 2) == picture ? 1 : 0;
        }
        return columns;
    }

    static bool isMarkedBeforePicture(const QImage& image) {
        for (int x = 0; x < image.width(); ++x) {
            const QColor colour = image.pixelColor(x, image.height() / 2);
            if (colour == picture) {
                return false;
            }
            if (colour.lightness() < 100) {
                return true;
            }
        }
        return false;
    }

    QMenu menu_;
    QActionGroup group_{nullptr};
};

} // namespace

TEST_F(MenuStyleTest, PicturesAreDrawnAtTheirOwnSize) {
    EXPECT_EQ(columnsOfPicture(entry(0)), 18);
    EXPECT_EQ(columnsOfPicture(entry(1)), 18);
}

TEST_F(MenuStyleTest, TheCheckMarkStandsBeforeThePicture) {
    EXPECT_TRUE(isMarkedBeforePicture(entry(0)));
    EXPECT_FALSE(isMarkedBeforePicture(entry(1)));
}

TEST_F(MenuStyleTest, LaterSubmenusGetTheSameStyle) {
    QMenu* nested = menu_.addMenu(u"nested"_s)->addMenu(u"in it"_s);
    MenuStyle::applyTo(menu_);
    EXPECT_NE(qobject_cast<MenuStyle*>(menu_.style()), nullptr);
    EXPECT_EQ(nested->style(), menu_.style());
}
