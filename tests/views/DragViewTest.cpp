#include "RootViewFixture.h"

using namespace amberquill;
using namespace Qt::StringLiterals;

namespace {

class DragViewTest : public RootViewFixture {
protected:
    // Takes the icon in this slot by its middle and moves it there.
    void drag(int slot, const QPointF& to) {
        start_ = iconCentre(slot);
        press(start_);
        dragTo(start_, to);
    }

    QPointF start_;
};

} // namespace

INSTANTIATE_TEST_SUITE_P(Sizes, DragViewTest,
                         testing::Values(QSize(1920, 1080), QSize(1280, 800), QSize(2560, 1440)),
                         [](const auto& size) {
                             return std::to_string(size.param.width()) + "x" +
                                    std::to_string(size.param.height());
                         });

TEST_P(DragViewTest, DraggingEmptiesTheCellAndTheIconFollowsThePointerATenthLarger) {
    showWith(80);
    const QPointF to =
        model_->metrics().cellCenter(11) + QPointF(model_->metrics().cellSize().width() / 2, 3);
    drag(3, to);
    finishIcons();
    const QImage image = picture();
    const QColor wanted = ColourIcons::colour(4);
    EXPECT_FALSE(isAbout(at(image, iconCentre(3)), wanted, 40));
    EXPECT_TRUE(isAbout(at(image, to), wanted));
    const double half = model_->metrics().iconSize() * 1.1 / 2;
    EXPECT_TRUE(isAbout(at(image, to - QPointF(half - 2, 0)), wanted));
    EXPECT_FALSE(isAbout(at(image, to - QPointF(half + 2, 0)), wanted, 40));
}

TEST_P(DragViewTest, TheDraggedIconHasAShadowBelowIt) {
    showWith(1);
    const QPointF to = model_->metrics().cellCenter(17);
    const QPointF below = to + QPointF(0, model_->metrics().iconSize() * 1.1 / 2 + 4);
    const int before = at(picture(), below).lightness();
    drag(0, to);
    finishIcons();
    EXPECT_LT(at(picture(), below).lightness(), before - 4);
}

TEST_P(DragViewTest, AnApplicationMarkedForAMergeShrinksIntoAFoldersOutline) {
    showWith(80);
    drag(3, iconCentre(4));
    advance(0.19);
    ASSERT_EQ(model_->mergeTargetID(), LaunchItem::app(path(5)).id());
    advance(1);
    // Aside, where the dragged icon does not cover it, but near enough to keep it marked.
    const GridMetrics metrics = model_->metrics();
    dragTo(start_, iconCentre(4) + QPointF(metrics.iconSize() * 0.8, 0));
    advance(0.5);
    ASSERT_EQ(model_->mergeTargetID(), LaunchItem::app(path(5)).id());
    const QImage image = picture();
    const double half = metrics.iconSize() / 2;
    const QColor wanted = ColourIcons::colour(5);
    EXPECT_TRUE(isAbout(at(image, iconCentre(4) - QPointF(half * 0.78 - 2, 0)), wanted, 4));
    const QColor outline = at(image, iconCentre(4) - QPointF(half * 0.87, 0));
    const QColor outside = at(image, iconCentre(4) - QPointF(half * 0.95 + 3, 0));
    EXPECT_FALSE(isAbout(outline, wanted, 30));
    EXPECT_GT(outline.lightness(), outside.lightness() + 25);
}

TEST_P(DragViewTest, AFolderMarkedForAMergeGrows) {
    files_.addFile(layoutPath,
                   encodeItems({LaunchItem::app(path(1)),
                                LaunchItem::folder({QUuid::createUuid(), u"F"_s, {path(20), path(21)}})}));
    showWith(30);
    const GridMetrics metrics = model_->metrics();
    const double edge = metrics.iconSize() * 0.82 / 2;
    const QPointF probe = iconCentre(1) - QPointF(edge * 1.07, 0);
    const int before = at(picture(), probe).lightness();
    drag(0, iconCentre(1));
    advance(1);
    dragTo(start_, iconCentre(1) + QPointF(metrics.iconSize() * 0.8, 0));
    advance(0.5);
    EXPECT_GT(at(picture(), probe).lightness(), before + 15);
}

TEST_P(DragViewTest, ADroppedIconGlidesIntoItsCellAndIsAsLargeAsBefore) {
    showWith(80);
    const QPointF to = iconCentre(3) + QPointF(30, 60);
    drag(3, to);
    finishIcons();
    model_->pointerEnded({start_, to});
    advance(0.05);
    EXPECT_FALSE(isAbout(at(picture(), to + QPointF(0, model_->metrics().iconSize() * 0.5)),
                         ColourIcons::colour(4), 30))
        << "it has left the hand";
    advance(0.5);
    const QImage image = picture();
    const double half = model_->metrics().iconSize() / 2;
    EXPECT_TRUE(isAbout(at(image, iconCentre(3) + QPointF(half - 2, 0)), ColourIcons::colour(4)));
    EXPECT_FALSE(isAbout(at(image, iconCentre(3) + QPointF(half + 2, 0)), ColourIcons::colour(4), 30));
}

TEST_P(DragViewTest, TheOthersMakeRoomWhileTheIconRestsOverAPlace) {
    showWith(80);
    const GridMetrics metrics = model_->metrics();
    drag(3, iconCentre(5) + QPointF(metrics.rawIconSize() * 0.62, 0));
    advance(2);
    EXPECT_TRUE(isAbout(at(picture(), iconCentre(3)), ColourIcons::colour(5)));
    EXPECT_TRUE(isAbout(at(picture(), iconCentre(4)), ColourIcons::colour(6)));
}

TEST_P(DragViewTest, WhileSearchingTheFirstResultIsMarkedAndThereAreNoDots) {
    showWith(80);
    const GridMetrics metrics = model_->metrics();
    const QPointF corner = metrics.cellCenter(0) - QPointF(metrics.cellSize().width() / 2 - 4, 0);
    const QPointF dot(GetParam().width() / 2.0, GetParam().height() - 35.0);
    const int before = at(picture(), corner).lightness();
    model_->setSearchText(u"App 4"_s);
    const QImage image = picture();
    EXPECT_GT(at(image, corner).lightness(), before + 20);
    EXPECT_LT(at(image, dot).lightness(), 120);
    const QPointF second = metrics.cellCenter(1) - QPointF(metrics.cellSize().width() / 2 - 10, 0);
    EXPECT_NEAR(at(image, second + QPointF(0, 10)).lightness(), before, 12) << "no other is";
    model_->setSearchText({});
    EXPECT_NEAR(at(picture(), corner).lightness(), before, 2);
}

TEST_P(DragViewTest, ASearchWithoutResultsShowsATextInTheMiddleOfTheGrid) {
    showWith(80);
    model_->setSearchText(u"no such application"_s);
    const QImage image = picture();
    const QPointF middle = model_->metrics().gridRect().center();
    int white = 0;
    for (double x = middle.x() - 60; x < middle.x() + 60; x += 1 / ratio()) {
        for (double y = middle.y() - 12; y < middle.y() + 12; y += 1 / ratio()) {
            white += at(image, {x, y}).lightness() > 150 ? 1 : 0;
        }
    }
    EXPECT_GT(white, 60);
}
