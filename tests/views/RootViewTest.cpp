#include "RootViewFixture.h"

using namespace amberquill;
using namespace Qt::StringLiterals;

namespace {

class RootViewTest : public RootViewFixture {};

} // namespace

INSTANTIATE_TEST_SUITE_P(Sizes, RootViewTest,
                         testing::Values(QSize(1920, 1080), QSize(1280, 800), QSize(2560, 1440)),
                         [](const auto& size) {
                             return std::to_string(size.param.width()) + "x" +
                                    std::to_string(size.param.height());
                         });

TEST_P(RootViewTest, TheModelKnowsTheContentsSize) {
    showWith(80);
    EXPECT_EQ(model_->size(), QSizeF(GetParam()));
    EXPECT_EQ(window_->rootObject()->size(), QSizeF(GetParam()));
}

TEST_P(RootViewTest, TheWashFillsTheWindow) {
    showWith(0);
    const QImage image = picture();
    ASSERT_EQ(image.size(), GetParam() * ratio());
    const QImage wash = backgroundWash(BackgroundTheme::Blue, image.size(), ratio());
    for (const QPoint point : {QPoint(3, 3), QPoint(image.width() - 4, 3), QPoint(image.width() / 2, 4),
                               QPoint(5, image.height() - 5), QPoint(image.width() - 5, image.height() - 5),
                               QPoint(image.width() / 2, image.height() / 2)}) {
        const QRgb pixel = reinterpret_cast<const QRgb*>(wash.constScanLine(point.y()))[point.x()];
        EXPECT_TRUE(isAbout(image.pixelColor(point), QColor(qRed(pixel), qGreen(pixel), qBlue(pixel)), 1));
    }
}

TEST_P(RootViewTest, EachIconIsAtItsCellsPlaceInItsSize) {
    showWith(80);
    const QImage image = picture();
    const double half = model_->metrics().iconSize() / 2;
    for (int slot = 0; slot < 35; ++slot) {
        const QColor wanted = ColourIcons::colour(slot + 1);
        const QPointF centre = iconCentre(slot);
        EXPECT_TRUE(isAbout(at(image, centre), wanted)) << slot;
        for (const QPointF side : {QPointF(1, 0), QPointF(-1, 0), QPointF(0, 1), QPointF(0, -1)}) {
            EXPECT_TRUE(isAbout(at(image, centre + side * (half - 2)), wanted)) << slot;
            EXPECT_FALSE(isAbout(at(image, centre + side * (half + 2)), wanted, 20)) << slot;
        }
    }
}

TEST_P(RootViewTest, IconsAreDrawnPixelForPixel) {
    showWith(80);
    const QImage image = picture();
    // A sharp edge: from the icon's colour to what is beside it within one device pixel.
    const QPoint centre = (iconCentre(8) * ratio()).toPoint();
    const QColor wanted = ColourIcons::colour(9);
    int x = centre.x();
    while (x < image.width() && isAbout(image.pixelColor(x, centre.y()), wanted)) {
        ++x;
    }
    ASSERT_LT(x, image.width()) << "the icon has no edge";
    EXPECT_FALSE(isAbout(image.pixelColor(x, centre.y()), wanted, 60)) << "a blurred edge";
}

TEST_P(RootViewTest, ThePlaceholderStandsInUntilIconsAreDecoded) {
    installed_ = apps(3);
    open();
    model_->setPresented(true);
    const QImage before = picture();
    EXPECT_FALSE(isAbout(at(before, iconCentre(0)), ColourIcons::colour(1), 40));
    const QImage wash = backgroundWash(BackgroundTheme::Blue, before.size(), ratio());
    const QPoint centre = (iconCentre(0) * ratio()).toPoint();
    const QRgb pixel = reinterpret_cast<const QRgb*>(wash.constScanLine(centre.y()))[centre.x()];
    EXPECT_TRUE(isAbout(before.pixelColor(centre),
                        lightened(QColor(qRed(pixel), qGreen(pixel), qBlue(pixel)), 0.16), 3));
    queue_.runPosted();
    EXPECT_TRUE(isAbout(at(picture(), iconCentre(0)), ColourIcons::colour(1)));
}

TEST_P(RootViewTest, ALabelStandsBelowItsIconInWhite) {
    showWith(80);
    const QImage image = picture();
    const GridMetrics metrics = model_->metrics();
    const QPointF centre = metrics.cellCenter(10);
    const double top = centre.y() + metrics.tileRect(centre).height() / 2 - metrics.labelHeight();
    int white = 0;
    int left = image.width();
    int right = 0;
    for (double y = top; y < top + metrics.labelHeight(); y += 1 / ratio()) {
        for (double x = centre.x() - metrics.cellSize().width() / 2;
             x < centre.x() + metrics.cellSize().width() / 2; x += 1 / ratio()) {
            if (at(image, {x, y}).lightness() > 200) {
                ++white;
                left = std::min(left, static_cast<int>(x * ratio()));
                right = std::max(right, static_cast<int>(x * ratio()));
            }
        }
    }
    EXPECT_GT(white, 40);
    EXPECT_NEAR((left + right) / 2.0, centre.x() * ratio(), 3 * ratio()) << "centred";
}

TEST_P(RootViewTest, ALongNameEndsInsideItsCell) {
    installed_ = {{u"/Applications/1.app"_s,
                   u"A name that is very much longer than any cell could ever be wide, <b>truly</b>"_s}};
    open();
    bringUp();
    const QImage image = picture();
    const GridMetrics metrics = model_->metrics();
    const QPointF centre = metrics.cellCenter(0);
    const double y = centre.y() + metrics.tileRect(centre).height() / 2 - metrics.labelHeight() / 2;
    const double half = (metrics.cellSize().width() - 8) / 2;
    const auto brightest = [&](double from, double to) {
        int lightness = 0;
        for (double dy = -metrics.labelHeight() / 2; dy < metrics.labelHeight() / 2; dy += 1 / ratio()) {
            for (double x = from; x < to; x += 1 / ratio()) {
                lightness = std::max(lightness, at(image, {x, y + dy}).lightness());
            }
        }
        return lightness;
    };
    EXPECT_GT(brightest(centre.x() + half - 30, centre.x() + half), 200);
    EXPECT_LT(brightest(centre.x() + half + 1, centre.x() + half + 40), 120);
    EXPECT_LT(brightest(centre.x() - half - 40, centre.x() - half - 1), 120);
}

TEST_P(RootViewTest, ThereIsADotForEachPageAndTheOneShownIsBrighter) {
    showWith(80);
    const auto dot = [this](const QImage& image, int index) {
        const double width = 3 * 18 + 2 * 6;
        const double x = (GetParam().width() - width) / 2 + index * 24 + 9;
        return at(image, {x, GetParam().height() - 26 - 9.0}).lightness();
    };
    const QImage first = picture();
    EXPECT_GT(dot(first, 0), 230);
    EXPECT_LT(dot(first, 1), 160);
    EXPECT_NEAR(dot(first, 1), dot(first, 2), 4);
    model_->goToPage(2);
    const QImage third = picture();
    EXPECT_LT(dot(third, 0), 160);
    EXPECT_GT(dot(third, 2), 230);
}

TEST_P(RootViewTest, OnePageHasOneDot) {
    showWith(3);
    const QImage image = picture();
    EXPECT_GT(at(image, {GetParam().width() / 2.0, GetParam().height() - 35.0}).lightness(), 230);
    EXPECT_LT(at(image, {GetParam().width() / 2.0 + 24, GetParam().height() - 35.0}).lightness(), 120);
}

TEST_P(RootViewTest, ATurnedPageTravelsAndRestsAtItsPlace) {
    showWith(80);
    model_->turnToPage(1);
    advance(0.1);
    const QImage halfway = picture();
    EXPECT_FALSE(isAbout(at(halfway, iconCentre(0)), ColourIcons::colour(1), 8));
    EXPECT_FALSE(isAbout(at(halfway, iconCentre(0)), ColourIcons::colour(36), 8));
    advance(2);
    queue_.runPosted();
    const QImage rest = picture();
    for (int slot = 0; slot < 35; ++slot) {
        EXPECT_TRUE(isAbout(at(rest, iconCentre(slot)), ColourIcons::colour(36 + slot))) << slot;
    }
}

TEST_P(RootViewTest, ThePagesFollowTheFingers) {
    showWith(80);
    model_->handleScroll({{0, 0}, true, ScrollEvent::Phase::Began, false});
    model_->handleScroll({{-120, 0}, true, ScrollEvent::Phase::Changed, false});
    EXPECT_TRUE(isAbout(at(picture(), iconCentre(3) - QPointF(120, 0)), ColourIcons::colour(4)));
}

TEST_P(RootViewTest, APressedTileIsDarker) {
    showWith(80);
    press(model_->metrics().cellCenter(5));
    const QColor wanted = ColourIcons::colour(6);
    const auto darker = [](int component) { return std::max(0, component - 77); };
    EXPECT_TRUE(isAbout(at(picture(), iconCentre(5)),
                        QColor(darker(wanted.red()), darker(wanted.green()), darker(wanted.blue())), 3));
    model_->pointerCancelled();
    EXPECT_TRUE(isAbout(at(picture(), iconCentre(5)), wanted));
}

TEST_P(RootViewTest, TheSearchFieldAndTheTwoButtonsStandAtTheTop) {
    showWith(80);
    const QImage image = picture();
    const QImage wash = backgroundWash(BackgroundTheme::Blue, image.size(), ratio());
    const double left = (GetParam().width() - 392) / 2.0;
    const auto isLit = [&](double x, double y) {
        const QPoint point = (QPointF(x, y) * ratio()).toPoint();
        const QRgb pixel = reinterpret_cast<const QRgb*>(wash.constScanLine(point.y()))[point.x()];
        return static_cast<bool>(isAbout(
            image.pixelColor(point), lightened(QColor(qRed(pixel), qGreen(pixel), qBlue(pixel)), 0.18), 3));
    };
    EXPECT_TRUE(isLit(left + 22, 40 + 6)) << "the first button";
    EXPECT_TRUE(isLit(left + 56 + 22, 40 + 5)) << "the second button";
    EXPECT_TRUE(isLit(left + 112 + 270, 40 + 22)) << "the field";
    EXPECT_FALSE(isLit(left - 4, 62));
    EXPECT_FALSE(isLit(left + 50, 62)) << "between the buttons";
    EXPECT_FALSE(isLit(left + 396, 62));
    EXPECT_FALSE(isLit(left + 1, 41)) << "outside the circle";
}

TEST_P(RootViewTest, TheContentIsInvisibleBeforeItIsPresented) {
    installed_ = apps(80);
    open();
    const QImage image = picture();
    const QImage wash = backgroundWash(BackgroundTheme::Blue, image.size(), ratio());
    const QPoint dot(image.width() / 2, static_cast<int>((GetParam().height() - 35) * ratio()));
    const QRgb pixel = reinterpret_cast<const QRgb*>(wash.constScanLine(dot.y()))[dot.x()];
    EXPECT_TRUE(isAbout(image.pixelColor(dot), QColor(qRed(pixel), qGreen(pixel), qBlue(pixel)), 1));
}

TEST_P(RootViewTest, TypingInTheSearchFieldSearches) {
    showWith(80);
    auto* field = item(u"searchField"_s);
    ASSERT_NE(field, nullptr);
    field->forceActiveFocus();
    type("app 42");
    EXPECT_EQ(model_->searchText(), u"app 42"_s);
    EXPECT_EQ(model_->displayedItems().size(), 1U);
}

TEST_P(RootViewTest, TheSearchFieldIsEmptiedWithTheSearchAndServesTheNext) {
    showWith(80);
    auto* field = item(u"searchField"_s);
    ASSERT_NE(field, nullptr);
    field->forceActiveFocus();
    type("x");
    model_->willShow();
    EXPECT_EQ(field->property("text").toString(), QString());
    type("y");
    EXPECT_EQ(model_->searchText(), u"y"_s);
    EXPECT_EQ(field->property("text").toString(), u"y"_s);
}
