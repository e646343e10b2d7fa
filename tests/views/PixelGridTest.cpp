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
        ASSERT_EQ(screen_->devicePixelRatio(), std::get<1>(GetParam()));
    }
    void TearDown() override { end(); }

    void showWith(int count) {
        ViewStage::showWith(count);
        ASSERT_EQ(ratio(), screen_->devicePixelRatio());
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
            if (type != u"amberquill::LabelTexture"_s) { // the height of a label depends on the font
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

    // Whether the colour at this point ends within one device pixel, in the direction of `step`.
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
        // Beyond a sharp edge neighbouring pixels look alike.
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

    // The caret of a field in this area: columns of white pixels of nearly its height. In device pixels;
    // empty if there is none.
    [[nodiscard]] static QRect caret(const QImage& image, const QRect& field) {
        QRect found;
        for (int x = field.left(); x <= field.right(); ++x) {
            int top = field.center().y();
            int bottom = top;
            const auto isWhite = [&](int y) { return isAbout(image.pixelColor(x, y), Qt::white); };
            while (top > field.top() && isWhite(top - 1)) {
                --top;
            }
            while (bottom < field.bottom() && isWhite(bottom + 1)) {
                ++bottom;
            }
            if (bottom - top >= field.height() * 3 / 4) {
                found |= QRect(QPoint(x, top), QPoint(x, bottom));
            }
        }
        return found;
    }

    // The item's device pixels, and so many points to the left and right of it.
    [[nodiscard]] QRect about(const QQuickItem* item, double beside) const {
        return pixels(item).adjusted(-beside * ratio(), 0, beside * ratio(), 0).toRect();
    }

    // A caret is a point wide, rounded to whole pixels.
    void expectCaretIn(const QImage& image, const QQuickItem* field) {
        const QRect found = caret(image, about(field, 3));
        EXPECT_EQ(found.width(), std::lround(ratio()));
        EXPECT_NEAR(found.height(), field->property("cursorRectangle").toRectF().height() * ratio(), 1);
    }

    // The brightest pixel in each row or column of a part (0 … 1) of a symbol: 0 is the background beside the
    // symbol, 1 its brightest pixel.
    [[nodiscard]] std::vector<double> profile(const QImage& image, const QQuickItem* symbol,
                                              const QRectF& part, bool isOfRows) const {
        const QRect whole = pixels(symbol).toRect();
        const QRect area(whole.topLeft() +
                             QPointF(part.x() * whole.width(), part.y() * whole.height()).toPoint(),
                         QSizeF(part.width() * whole.width(), part.height() * whole.height()).toSize());
        const int bare = image.pixelColor(whole.topLeft()).lightness();
        std::vector<double> brightest(static_cast<std::size_t>(isOfRows ? area.height() : area.width()));
        for (int y = 0; y < area.height(); ++y) {
            for (int x = 0; x < area.width(); ++x) {
                double& value = brightest[static_cast<std::size_t>(isOfRows ? y : x)];
                value = std::max<double>(value,
                                         image.pixelColor(area.topLeft() + QPoint(x, y)).lightness() - bare);
            }
        }
        const double peak = *std::max_element(brightest.begin(), brightest.end());
        EXPECT_GT(peak, 40);
        for (double& value : brightest) {
            value /= peak;
        }
        return brightest;
    }

    void expectOnPixels(const QImage& image, const QString& name, const QRectF& part, bool isOfRows) {
        for (const QQuickItem* symbol : drawn(u"amberquill::SymbolTexture"_s)) {
            if (symbol->property("name").toString() != name) {
                continue;
            }
            const auto values = profile(image, symbol, part, isOfRows);
            EXPECT_TRUE(std::all_of(values.begin(), values.end(),
                                    [](double value) { return value < 0.1 || value > 0.9; }))
                << name.toStdString() << (isOfRows ? ", rows: " : ", columns: ")
                << testing::PrintToString(values);
            return;
        }
        ADD_FAILURE() << name.toStdString() << " is not drawn";
    }

    [[nodiscard]] QQuickItem* focused(const QString& name) const {
        QQuickItem* field = item(name);
        EXPECT_NE(field, nullptr);
        field->forceActiveFocus();
        return field;
    }

    void addFolderOfFive() {
        files_.addFile(layoutPath, encodeItems({LaunchItem::app(path(1)), LaunchItem::folder(games_)}));
    }

    const Folder games_{QUuid(u"3F2504E0-4F89-11D3-9A0C-0305E82C3301"_s),
                        u"Games"_s,
                        {path(11), path(12), path(13), path(14), path(15)}};
};

std::string nameOf(const testing::TestParamInfo<std::tuple<QSize, double>>& screen) {
    return QStringLiteral("%1x%2at%3")
        .arg(std::get<0>(screen.param).width())
        .arg(std::get<0>(screen.param).height())
        .arg(std::lround(std::get<1>(screen.param) * 100))
        .toStdString();
}

} // namespace

INSTANTIATE_TEST_SUITE_P(Screens, PixelGridTest,
                         testing::Combine(testing::Values(QSize(1920, 1080), QSize(1280, 800),
                                                          QSize(1366, 768)),
                                          testing::Values(1.0, 1.25, 1.5, 1.75)),
                         nameOf);
INSTANTIATE_TEST_SUITE_P(DenseScreens, PixelGridTest,
                         testing::Combine(testing::Values(QSize(1280, 800)), testing::Values(2.0, 3.0)),
                         nameOf);

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

TEST_P(PixelGridTest, TheIconsOfAGrownFolderAreSharp) {
    addFolderOfFive();
    showWith(80);
    const QPointF start = iconCentre(0);
    press(start);
    dragTo(start, iconCentre(1));
    advance(1);
    // Aside, where the dragged icon does not cover it, but near enough to keep it marked.
    dragTo(start, iconCentre(1) + QPointF(model_->metrics().iconSize() * 0.8, 0));
    settle();
    ASSERT_EQ(model_->mergeTargetID(), LaunchItem::folder(games_).id());
    const QImage image = picture();
    const double body = model_->metrics().iconSize() * 0.82 * 1.12;
    expectSharpIcon(image, iconCentre(1) - QPointF(body * 0.3, body * 0.3), {{-1, 0}, {0, -1}});
}

TEST_P(PixelGridTest, TheDraggedIconIsSharpAtRest) {
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

TEST_P(PixelGridTest, TheCaretOfTheEmptySearchFieldStandsBesideThePlaceholder) {
    showWith(3);
    const QQuickItem* field = focused(u"searchField"_s);
    const QImage with = picture();
    expectCaretIn(with, field);
    const QRect columns = caret(with, about(field, 3));
    window_->endEditing();
    const QImage without = picture();
    ASSERT_TRUE(caret(without, about(field, 3)).isEmpty());
    // No letter lies below the caret, and one follows it.
    const auto inkIn = [&](const QRect& area) {
        const QColor bare = without.pixelColor(columns.left() - 3, columns.center().y());
        int ink = 0;
        for (int y = area.top(); y <= area.bottom(); ++y) {
            for (int x = area.left(); x <= area.right(); ++x) {
                ink += isAbout(without.pixelColor(x, y), bare, 6) ? 0 : 1;
            }
        }
        return ink;
    };
    EXPECT_EQ(inkIn(columns.adjusted(-1, 0, 1, 0)), 0);
    EXPECT_GT(inkIn(columns.translated(static_cast<int>(4 * ratio()), 0)), 0);
}

TEST_P(PixelGridTest, TheCaretIsVisibleAtEveryPositionOfAText) {
    showWith(3);
    QQuickItem* field = focused(u"searchField"_s);
    type("ones more screens or even more names or no areas");
    for (const int position : {47, 30, 10, 5, 1, 0}) {
        field->setProperty("cursorPosition", position);
        expectCaretIn(picture(), field);
    }
}

TEST_P(PixelGridTest, TheCaretOfAFoldersTitleIsVisibleAtBothEndsOfALongName) {
    addFolderOfFive();
    showWith(80);
    model_->renameFolder(games_.id,
                         u"ones more screens or even more names or no areas, once more or even more"_s);
    for (const bool isLong : {true, false}) {
        if (!isLong) {
            model_->renameFolder(games_.id, u"Games"_s);
        }
        model_->openFolder(games_.id);
        settle();
        QQuickItem* field = focused(u"folderTitle"_s);
        for (const int position : {static_cast<int>(model_->folder(games_.id)->name.size()), 2, 0}) {
            field->setProperty("cursorPosition", position);
            expectCaretIn(picture(), field);
        }
        model_->closeFolder();
        settle();
    }
}

TEST_P(PixelGridTest, TheSymbolsLinesAndCirclesLieOnWholePixels) {
    showWith(3);
    model_->setSearchText(u"App"_s);
    settle();
    const QImage image = picture();
    // Parts with horizontal or vertical lines alone, and the outermost rows and columns of circles.
    expectOnPixels(image, u"line.3.horizontal"_s, {0.3, 0, 0.4, 1}, true);
    expectOnPixels(image, u"plus"_s, {0.2, 0, 0.2, 1}, true);
    expectOnPixels(image, u"plus"_s, {0, 0.2, 1, 0.2}, false);
    expectOnPixels(image, u"magnifyingglass"_s, {0, 0, 0.7, 0.25}, true);
    expectOnPixels(image, u"magnifyingglass"_s, {0, 0, 0.25, 0.7}, false);
    expectOnPixels(image, u"xmark.circle.fill"_s, {0, 0, 1, 1}, true);
    expectOnPixels(image, u"xmark.circle.fill"_s, {0, 0, 1, 1}, false);
}
