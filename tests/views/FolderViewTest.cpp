#include "RootViewFixture.h"

#include "data/FolderMetrics.h"

using namespace amberquill;
using namespace Qt::StringLiterals;

namespace {

class FolderViewTest : public RootViewFixture {
protected:
    // Applications 1 and 2, then a folder of `count` applications from 11 on, then the rest.
    void showWithFolder(int count) {
        QStringList inside;
        for (int i = 0; i < count; ++i) {
            inside += path(11 + i);
        }
        files_.addFile(layoutPath, encodeItems({LaunchItem::app(path(1)), LaunchItem::app(path(2)),
                                                LaunchItem::folder({id_, u"Games"_s, inside})}));
        showWith(60);
    }

    void openFolder() {
        model_->openFolder(id_);
        settle();
    }

    [[nodiscard]] FolderMetrics panel(int count) const { return FolderMetrics::of(count, model_->metrics()); }

    // The centre of a folder icon's i-th small icon, the folder being in this slot.
    [[nodiscard]] QPointF mini(int slot, int index) const {
        const double body = model_->metrics().iconSize() * 0.82;
        const double edge = body * 0.28;
        const double gap = body * 0.02;
        const double inset = (body - 3 * edge - 2 * gap) / 2;
        const auto along = [&](int place) { return -body / 2 + inset + place * (edge + gap) + edge / 2; };
        return iconCentre(slot) + QPointF(along(index % 3), along(index / 3));
    }

    const QUuid id_{u"3F2504E0-4F89-11D3-9A0C-0305E82C3301"_s};
};

} // namespace

INSTANTIATE_TEST_SUITE_P(Sizes, FolderViewTest,
                         testing::Values(QSize(1920, 1080), QSize(1280, 800), QSize(2560, 1440)),
                         [](const auto& size) {
                             return std::to_string(size.param.width()) + "x" +
                                    std::to_string(size.param.height());
                         });

TEST_P(FolderViewTest, AFoldersIconShowsItsFirstNineApplicationsInRowsOfThree) {
    showWithFolder(12);
    settle();
    const QImage image = picture();
    for (int i = 0; i < 9; ++i) {
        EXPECT_TRUE(isAbout(at(image, mini(2, i)), ColourIcons::colour(11 + i))) << i;
    }
}

TEST_P(FolderViewTest, OneApplicationStandsAtTheTopLeftOfItsFoldersIcon) {
    showWithFolder(1);
    settle();
    const QImage image = picture();
    EXPECT_TRUE(isAbout(at(image, mini(2, 0)), ColourIcons::colour(11)));
    const QColor body = at(image, mini(2, 4));
    EXPECT_TRUE(isAbout(at(image, mini(2, 1)), body, 12)) << "nothing but the translucent body";
    EXPECT_GT(body.lightness(),
              at(image, iconCentre(2) - QPointF(model_->metrics().iconSize() / 2, 0)).lightness());
}

TEST_P(FolderViewTest, ThePanelStandsAtItsPlaceWithTheApplicationsAtTheirs) {
    showWithFolder(10);
    const QImage before = picture();
    openFolder();
    const QImage image = picture();
    const FolderMetrics metrics = panel(10);
    const double rise = model_->metrics().iconRise() * metrics.scale;
    for (int i = 0; i < 10; ++i) {
        EXPECT_TRUE(isAbout(at(image, metrics.cellCenter(i) - QPointF(0, rise)), ColourIcons::colour(11 + i)))
            << i;
    }
    const QRectF& rect = metrics.panelRect;
    for (const QPointF inside :
         {QPointF(rect.left() + 4, rect.center().y()), QPointF(rect.right() - 4, rect.center().y()),
          QPointF(rect.center().x() + 250, rect.top() + 8), QPointF(rect.center().x(), rect.bottom() - 4)}) {
        EXPECT_GT(at(image, inside).lightness(), at(before, QPointF(3, inside.y())).lightness() / 4 + 10);
    }
    // The corner is round: the panel's shadow is seen there.
    EXPECT_LT(at(image, rect.topLeft() + QPointF(2, 2)).lightness(),
              at(image, rect.topLeft() + QPointF(20, 20)).lightness());
}

TEST_P(FolderViewTest, BehindAnOpenFolderThePageIsDim) {
    showWithFolder(4);
    openFolder();
    const QImage image = picture();
    const QImage wash = backgroundWash(BackgroundTheme::Blue, image.size(), ratio());
    const QPoint pixel = (iconCentre(0) * ratio()).toPoint();
    const QRgb under = reinterpret_cast<const QRgb*>(wash.constScanLine(pixel.y()))[pixel.x()];
    const QColor icon = ColourIcons::colour(1);
    const auto mixed = [](int over, int below) {
        return static_cast<int>(std::lround(over * 0.2 + below * 0.8));
    };
    EXPECT_TRUE(isAbout(at(image, iconCentre(0)),
                        QColor(mixed(icon.red(), qRed(under)), mixed(icon.green(), qGreen(under)),
                               mixed(icon.blue(), qBlue(under))),
                        4));
}

TEST_P(FolderViewTest, ThePageDotsAreHiddenWhileAFolderIsOpen) {
    showWithFolder(4);
    const QPointF dot(GetParam().width() / 2.0 - 12, GetParam().height() - 35.0);
    EXPECT_GT(at(picture(), dot).lightness(), 230);
    openFolder();
    EXPECT_LT(at(picture(), dot).lightness(), 120);
}

TEST_P(FolderViewTest, ThePanelGrowsFromALittleSmallerAndFadesIn) {
    showWithFolder(4);
    model_->openFolder(id_);
    advance(0.05);
    const QImage early = picture();
    const FolderMetrics metrics = panel(4);
    const QPointF icon = metrics.cellCenter(0) - QPointF(0, model_->metrics().iconRise() * metrics.scale);
    const QColor wanted = ColourIcons::colour(11);
    EXPECT_FALSE(isAbout(at(early, icon), wanted, 10)) << "still translucent";
    settle();
    EXPECT_TRUE(isAbout(at(picture(), icon), wanted));
    model_->closeFolder();
    advance(0.1);
    EXPECT_FALSE(isAbout(at(picture(), icon), wanted, 10)) << "on its way out";
    settle();
    EXPECT_TRUE(isAbout(at(picture(), iconCentre(0)), ColourIcons::colour(1)))
        << "the page is as bright as before";
}

TEST_P(FolderViewTest, AnEmptyFolderShowsATextInTheMiddleOfItsPanel) {
    showWithFolder(0);
    openFolder();
    const QImage image = picture();
    const QPointF middle = panel(0).panelRect.center();
    int white = 0;
    for (double x = middle.x() - 60; x < middle.x() + 60; x += 1 / ratio()) {
        for (double y = middle.y() - 8; y < middle.y() + 8; y += 1 / ratio()) {
            white += at(image, {x, y}).lightness() > 150 ? 1 : 0;
        }
    }
    EXPECT_GT(white, 40);
}

TEST_P(FolderViewTest, TheTitleIsEditedInPlace) {
    showWithFolder(3);
    openFolder();
    auto* title = item(u"folderTitle"_s);
    ASSERT_NE(title, nullptr);
    const QRectF rect = panel(3).panelRect;
    EXPECT_NEAR(title->x() + title->width() / 2, rect.center().x(), 0.5);
    EXPECT_NEAR(title->y() + title->height() / 2, rect.top() + 39, 0.5);
    EXPECT_NEAR(title->width(), std::min(rect.width() - 60, 420.0), 0.01);
    EXPECT_EQ(title->property("text").toString(), u"Games"_s);
    title->forceActiveFocus();
    QTest::keyClick(window_.get(), Qt::Key_End);
    type(" 2");
    EXPECT_EQ(model_->folder(id_)->name, u"Games 2"_s);
    for (int i = 0; i < 7; ++i) {
        QTest::keyClick(window_.get(), Qt::Key_Backspace);
    }
    EXPECT_EQ(model_->folder(id_)->name, QString()) << "an empty name is kept";
}
