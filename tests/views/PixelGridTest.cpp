#include "RootViewFixture.h"

#include <QGuiApplication>
#include <tuple>

using namespace amberquill;
using namespace Qt::StringLiterals;

namespace {

QScreen* screenWith(double ratio) {
    const auto screens = QGuiApplication::screens();
    const auto found = std::find_if(screens.begin(), screens.end(), [ratio](const QScreen* screen) {
        return screen->name() == QString::number(ratio);
    });
    return found != screens.end() ? *found : nullptr;
}

// The views on screens of several sizes and resolutions.
class PixelGridTest : public testing::TestWithParam<std::tuple<QSize, double>>, protected ViewStage {
protected:
    void SetUp() override {
        begin(std::get<0>(GetParam()));
        screen_ = screenWith(std::get<1>(GetParam()));
        ASSERT_NE(screen_, nullptr);
        ASSERT_EQ(screen_->devicePixelRatio(), std::get<1>(GetParam()) * scaleFactor());
    }
    void TearDown() override { end(); }

    // What the whole program is scaled by besides.
    [[nodiscard]] static double scaleFactor() {
        const double factor = qEnvironmentVariable("QT_SCALE_FACTOR").toDouble();
        return factor > 0 ? factor : 1;
    }

    // Where an item is drawn, in device pixels.
    [[nodiscard]] QRectF pixels(const QQuickItem* item) const {
        const QRectF rect = drawnRect(item);
        return {rect.topLeft() * ratio(), rect.size() * ratio()};
    }

    void expectWhole(const QString& type, std::size_t least) {
        const auto items = drawn(type);
        EXPECT_GE(items.size(), least) << type.toStdString();
        for (const QQuickItem* item : items) {
            const QRectF rect = pixels(item);
            for (const double edge : {rect.left(), rect.top()}) {
                EXPECT_NEAR(edge, std::round(edge), 1e-6) << type.toStdString();
            }
            if (type != u"amberquill::LabelTexture"_s) { // a label's own height is the font's business
                EXPECT_NEAR(rect.right(), std::round(rect.right()), 1e-6) << type.toStdString();
                EXPECT_NEAR(rect.bottom(), std::round(rect.bottom()), 1e-6) << type.toStdString();
            }
        }
    }

    void expectEverythingWhole(std::size_t icons) {
        expectWhole(u"amberquill::AppIconTexture"_s, icons);
        expectWhole(u"amberquill::LabelTexture"_s, icons / 2);
        expectWhole(u"amberquill::RoundedShape"_s, 3);
        expectWhole(u"amberquill::SymbolTexture"_s, 2);
    }

    // From a colour to what is beside it within one device pixel, going from this point: 1, 0 is to the
    // right.
    [[nodiscard]] static testing::AssertionResult endsSharply(const QImage& image, QPoint from,
                                                              const QPoint& step) {
        const QColor inside = image.pixelColor(from);
        int walked = 0;
        while (image.rect().contains(from) && isAbout(image.pixelColor(from), inside)) {
            from += step;
            ++walked;
        }
        if (!image.rect().contains(from) || walked < 4) {
            return testing::AssertionFailure() << "no edge, after " << walked << " pixels";
        }
        // Where an icon ends, neighbours beyond its edge look alike.
        return isAbout(image.pixelColor(from), image.pixelColor(from + step), 12)
                   ? testing::AssertionSuccess()
                   : testing::AssertionFailure()
                         << "a blurred edge after " << walked
                         << " pixels: " << image.pixelColor(from).name().toStdString() << ", "
                         << image.pixelColor(from + step).name().toStdString();
    }

    void expectSharpIcon(const QImage& image, const QPointF& centre,
                         const std::vector<QPoint>& sides = {{1, 0}, {-1, 0}, {0, -1}}) {
        const QPoint middle = (centre * ratio()).toPoint();
        for (const QPoint& step : sides) {
            EXPECT_TRUE(endsSharply(image, middle, step)) << step.x() << ", " << step.y();
        }
    }

    void addFolderOfFive() {
        files_.addFile(layoutPath, encodeItems({LaunchItem::app(path(1)), LaunchItem::folder(games_)}));
    }

    const Folder games_{QUuid(u"3F2504E0-4F89-11D3-9A0C-0305E82C3301"_s),
                        u"Games"_s,
                        {path(11), path(12), path(13), path(14), path(15)}};
};

} // namespace

INSTANTIATE_TEST_SUITE_P(Screens, PixelGridTest,
                         testing::Combine(testing::Values(QSize(1920, 1080), QSize(1280, 800),
                                                          QSize(1366, 768)),
                                          testing::Values(1.0, 1.25, 1.5, 2.0, 3.0)),
                         [](const auto& screen) {
                             return QStringLiteral("%1x%2at%3")
                                 .arg(std::get<0>(screen.param).width())
                                 .arg(std::get<0>(screen.param).height())
                                 .arg(std::lround(std::get<1>(screen.param) * 100))
                                 .toStdString();
                         });

TEST_P(PixelGridTest, NothingOnThePageStraddlesADevicePixel) {
    addFolderOfFive();
    showWith(80);
    ASSERT_EQ(picture().size(), (QSizeF(contentSize_) * ratio()).toSize());
    expectEverythingWhole(35);
    model_->setSearchText(u"App 4"_s);
    expectEverythingWhole(10);
}

TEST_P(PixelGridTest, NothingInAFolderStraddlesADevicePixel) {
    addFolderOfFive();
    showWith(80);
    model_->openFolder(games_.id);
    settle();
    expectEverythingWhole(40);
    expectWhole(u"amberquill::FrostedSlab"_s, 1);
    expectWhole(u"FolderTitle"_s, 0);
}

TEST_P(PixelGridTest, IconsAreAsSharpAsTheirPixels) {
    addFolderOfFive();
    showWith(80);
    settle();
    const QImage image = picture();
    for (const int slot : {0, 2, 8, 34}) {
        expectSharpIcon(image, iconCentre(slot));
    }
}

TEST_P(PixelGridTest, ASwollenFoldersIconsAreAsSharpAsTheOthers) {
    addFolderOfFive();
    showWith(80);
    const QPointF start = iconCentre(0);
    press(start);
    dragTo(start, iconCentre(1));
    advance(1);
    // Aside, where the hand does not cover it, but near enough to keep it marked.
    dragTo(start, iconCentre(1) + QPointF(model_->metrics().iconSize() * 0.8, 0));
    settle();
    ASSERT_EQ(model_->mergeTargetID(), LaunchItem::folder(games_).id());
    const QImage image = picture();
    const double body = model_->metrics().iconSize() * 0.82 * 1.12;
    expectSharpIcon(image, iconCentre(1) - QPointF(body * 0.3, body * 0.3), {{-1, 0}, {0, -1}});
}

TEST_P(PixelGridTest, TheIconInTheHandIsSharpWhereItRests) {
    addFolderOfFive();
    showWith(80);
    const QPointF start = iconCentre(3);
    press(start);
    const QPointF to =
        model_->metrics().cellCenter(11) + QPointF(model_->metrics().cellSize().width() / 2, 3);
    dragTo(start, to);
    settle();
    expectSharpIcon(picture(), to);
}

TEST_P(PixelGridTest, OnAnotherScreenEverythingIsPaintedAnewForIt) {
    addFolderOfFive();
    showWith(80);
    QScreen* other = screenWith(std::get<1>(GetParam()) == 2 ? 1.25 : 2);
    ASSERT_NE(other, nullptr);
    window_->setScreen(other);
    window_->setGeometry({other->geometry().topLeft(), contentSize_});
    settle();
    ASSERT_EQ(ratio(), other->devicePixelRatio());
    ASSERT_EQ(picture().size(), (QSizeF(contentSize_) * ratio()).toSize());
    expectEverythingWhole(35);
    const QImage image = picture();
    for (const int slot : {0, 2, 8, 34}) {
        expectSharpIcon(image, iconCentre(slot));
    }
    const double half = model_->metrics().iconSize() / 2;
    EXPECT_TRUE(isAbout(at(image, iconCentre(8) + QPointF(half - 2, 0)), ColourIcons::colour(8)));
}
