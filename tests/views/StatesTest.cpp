#include "RootViewFixture.h"

#include "data/FolderMetrics.h"
#include "motion/Animation.h"
#include "motion/Animations.h"

using namespace amberquill;
using namespace Qt::StringLiterals;

namespace {

// The items' places, sizes and opacities in every state of the launcher.
class StatesTest : public RootViewFixture {
protected:
    void showWithFolder(int count) {
        QStringList inside;
        for (int i = 0; i < count; ++i) {
            inside += path(41 + i);
        }
        files_.addFile(layoutPath, encodeItems({LaunchItem::app(path(1)), LaunchItem::app(path(2)),
                                                LaunchItem::folder({id_, u"Games"_s, inside})}));
        showWith(60);
        settle();
    }

    // The page holds one folder, whose panel does not lie over its icon: behind the panel is the wash alone.
    void showOnlyAFolder() {
        files_.addFile(layoutPath, encodeItems({LaunchItem::folder({id_, u"Games"_s, {path(1), path(2)}})}));
        showWith(2);
        settle();
    }

    void openFolder() { model_->openFolder(id_); }

    void drag(int slot, const QPointF& to) {
        start_ = iconCentre(slot);
        press(start_);
        dragTo(start_, to);
    }

    // The one item of that type that is drawn; null when there is none.
    [[nodiscard]] QQuickItem* only(const QString& type) const {
        const auto items = drawn(type);
        EXPECT_LE(items.size(), 1U) << type.toStdString();
        return items.empty() ? nullptr : items.front();
    }

    [[nodiscard]] QColor under(const QPointF& point) const {
        const QSize pixels = contentSize_ * ratio();
        if (wash_.size() != pixels) {
            wash_ = backgroundWash(BackgroundTheme::Blue, pixels, ratio());
        }
        const QPoint pixel = pixelOf(point);
        const QRgb colour = reinterpret_cast<const QRgb*>(wash_.constScanLine(pixel.y()))[pixel.x()];
        return {qRed(colour), qGreen(colour), qBlue(colour)};
    }

    [[nodiscard]] double pixel() const { return 1 / ratio(); }

    const QUuid id_{u"3F2504E0-4F89-11D3-9A0C-0305E82C3301"_s};
    QPointF start_;
    mutable QImage wash_;
};

void expectRect(const QRectF& rect, const QRectF& wanted, double tolerance) {
    EXPECT_NEAR(rect.left(), wanted.left(), tolerance);
    EXPECT_NEAR(rect.top(), wanted.top(), tolerance);
    EXPECT_NEAR(rect.right(), wanted.right(), tolerance);
    EXPECT_NEAR(rect.bottom(), wanted.bottom(), tolerance);
}

QRectF around(const QPointF& centre, double edge) {
    return {centre.x() - edge / 2, centre.y() - edge / 2, edge, edge};
}

} // namespace

INSTANTIATE_TEST_SUITE_P(Sizes, StatesTest,
                         testing::Values(QSize(1920, 1080), QSize(1280, 800), QSize(2560, 1440)),
                         [](const auto& size) {
                             return std::to_string(size.param.width()) + "x" +
                                    std::to_string(size.param.height());
                         });

TEST_P(StatesTest, EachTileHasItsRectangle) {
    showWith(80);
    settle();
    const GridMetrics metrics = model_->metrics();
    int slot = 0;
    for (const QQuickItem* tile : drawn(u"IconTile"_s)) {
        if (slot < 35) {
            const QPointF centre = metrics.cellCenter(slot);
            expectRect(drawnRect(tile), metrics.tileRect(centre), pixel());
            expectRect(drawnRect(iconOf(slot + 1)), around(iconCentre(slot), metrics.iconSize()), pixel());
        }
        ++slot;
    }
    EXPECT_EQ(slot, 70) << "the page and the one beside it";
    const auto labels = drawn(u"amberquill::LabelTexture"_s);
    const QRectF tile = metrics.tileRect(metrics.cellCenter(9));
    const double width = metrics.cellSize().width() - 8;
    expectRect(
        drawnRect(labels.at(9)),
        {tile.center().x() - width / 2, tile.bottom() - metrics.labelHeight(), width, metrics.labelHeight()},
        pixel());
}

TEST_P(StatesTest, AFoldersNineSmallIconsHaveTheirRectangles) {
    showWithFolder(12);
    const double icon = model_->metrics().iconSize();
    const double body = icon * 0.82;
    const double mini = body * 0.28;
    const double gap = body * 0.02;
    const double inset = (body - 3 * mini - 2 * gap) / 2;
    const QPointF corner = iconCentre(2) - QPointF(body, body) / 2;
    const QQuickItem* folder = only(u"FolderIcon"_s);
    ASSERT_NE(folder, nullptr);
    std::vector<QRectF> minis;
    std::vector<QRectF> bodies;
    for (const QQuickItem* child : folder->childItems()) {
        const QString type = QString::fromLatin1(child->metaObject()->className());
        if (type.startsWith(u"amberquill::AppIconTexture"_s)) {
            minis.push_back(drawnRect(child));
        } else if (type == u"amberquill::RoundedShape"_s) {
            bodies.push_back(drawnRect(child));
            EXPECT_NEAR(child->property("radius").toDouble(), body * 0.225, 0.12);
        }
    }
    ASSERT_EQ(bodies.size(), 1U);
    expectRect(bodies[0], around(iconCentre(2), body), 1.5 * pixel());
    ASSERT_EQ(minis.size(), 9U);
    for (int i = 0; i < 9; ++i) {
        const QPointF at = corner + QPointF(inset + i % 3 * (mini + gap), inset + i / 3 * (mini + gap));
        expectRect(minis.at(static_cast<std::size_t>(i)), {at, QSizeF(mini, mini)}, 2 * pixel());
    }
    // Translucent white and a brighter line inside its edge.
    const QImage image = picture();
    const QPointF inside = iconCentre(2) + QPointF(0, body / 2 - inset / 2);
    EXPECT_TRUE(isAbout(at(image, inside), lightened(under(inside), 0.2), 4));
    const QRectF edge = bodies[0];
    const QPointF line(edge.center().x(), edge.top() + 0.4);
    EXPECT_TRUE(isAbout(at(image, line), lightened(lightened(under(line), 0.2), 0.22), 6));
}

TEST_P(StatesTest, TheContentShrinksFrom108PerCentAndFadesIn) {
    installed_ = apps(80);
    open();
    QCoreApplication::processEvents();
    ASSERT_NE(iconOf(1), nullptr);
    const GridMetrics metrics = model_->metrics();
    const QPointF middle(contentSize_.width() / 2.0, contentSize_.height() / 2.0);
    const auto scale = [&] {
        return (drawnRect(iconOf(1)).center().x() - middle.x()) / (iconCentre(0).x() - middle.x());
    };
    withAnimation(motion::show, [&] { model_->setPresented(true); });
    EXPECT_NEAR(scale(), 1.08, 0.001);
    EXPECT_NEAR(drawnRect(iconOf(1)).width(), metrics.iconSize() * 1.08, 1);
    EXPECT_EQ(drawnOpacity(iconOf(1)), 0);
    double last = scale();
    for (int frame = 0; frame < 8; ++frame) {
        advance(1.0 / 60);
        EXPECT_LT(scale(), last);
        last = scale();
    }
    EXPECT_GT(drawnOpacity(iconOf(1)), 0.3);
    advance(2);
    EXPECT_NEAR(scale(), 1, 0.001);
    EXPECT_EQ(drawnOpacity(iconOf(1)), 1);
    withAnimation(motion::hide, [&] { model_->setPresented(false); });
    advance(0.5);
    EXPECT_NEAR(scale(), 1.08, 0.001);
    EXPECT_EQ(drawnOpacity(iconOf(1)), 0);
}

TEST_P(StatesTest, AFoldersPanelGrowsFrom92PerCentAndShrinksBack) {
    showWithFolder(4);
    openFolder();
    const QString slab = u"amberquill::FrostedSlab"_s;
    const QRectF panel = FolderMetrics::of(4, model_->metrics()).panelRect;
    const auto scale = [&] { return drawnRect(only(slab)).width() / panel.width(); };
    advance(0.001);
    ASSERT_NE(only(slab), nullptr);
    EXPECT_NEAR(scale(), 0.92, 0.02);
    EXPECT_LT(drawnOpacity(only(slab)), 0.3);
    settle();
    EXPECT_NEAR(scale(), 1, 0.005);
    expectRect(drawnRect(only(slab)), panel, pixel());
    EXPECT_EQ(drawnOpacity(only(slab)), 1);
    EXPECT_NEAR(drawnOpacity(iconOf(1)), 0.2, 1e-9);
    model_->closeFolder();
    advance(0.19);
    ASSERT_NE(only(slab), nullptr);
    EXPECT_NEAR(scale(), 0.92, 0.005);
    EXPECT_LT(drawnOpacity(only(slab)), 0.05);
    settle();
    EXPECT_EQ(only(slab), nullptr);
    EXPECT_EQ(drawnOpacity(iconOf(1)), 1);
}

TEST_P(StatesTest, AnOpenFoldersTitleIsAsOpaqueAsItsPanel) {
    showWithFolder(4);
    const QString slab = u"amberquill::FrostedSlab"_s;
    const QString title = u"FolderTitle"_s;
    const auto expectAlike = [&](double least, double most) {
        ASSERT_NE(only(slab), nullptr);
        ASSERT_NE(only(title), nullptr);
        EXPECT_EQ(drawnOpacity(only(title)), drawnOpacity(only(slab)));
        EXPECT_GE(drawnOpacity(only(title)), least);
        EXPECT_LE(drawnOpacity(only(title)), most);
    };
    openFolder();
    EXPECT_EQ(only(title), nullptr);
    advance(0.001);
    expectAlike(0.001, 0.3);
    advance(0.05);
    expectAlike(0.05, 0.9);
    settle();
    expectAlike(1, 1);
    model_->closeFolder();
    advance(0.1);
    expectAlike(0.01, 0.9);
    model_->openFolder(id_);
    advance(0.02);
    expectAlike(0.01, 0.99);
    model_->closeFolder();
    settle();
    EXPECT_EQ(only(title), nullptr);
}

TEST_P(StatesTest, ThePanelsCornerIsAContinuousCurveOfRadius30) {
    showOnlyAFolder();
    openFolder();
    settle();
    const QImage image = picture();
    const QRectF panel = drawnRect(only(u"amberquill::FrostedSlab"_s));
    const double row = panel.top() + 0.5 * pixel();
    const auto lit = [&](double x, double y) { return at(image, {panel.left() + x, y}).lightness(); };
    // In the first row of pixels a circular arc of this radius would already be bright here.
    const int side = lit(panel.width() / 2, row);
    const int outside =
        at(image, {panel.left() + panel.width() / 2, panel.top() - 1.5 * pixel()}).lightness();
    ASSERT_GT(side, outside + 30);
    EXPECT_LT(lit(26.5, row), outside + (side - outside) * 0.4);
    EXPECT_GT(lit(50, row), outside + (side - outside) * 0.8);
    // On the diagonal it meets the arc: 30 × (1 − √½) = 8.8 points from the tip along either side.
    const QPointF tip = panel.topLeft();
    const int inner = at(image, tip + QPointF(14, 14)).lightness();
    EXPECT_GT(at(image, tip + QPointF(9.4, 9.4)).lightness(), inner) << "the line inside its edge";
    EXPECT_LT(at(image, tip + QPointF(6.8, 6.8)).lightness(), inner - 10);
}

TEST_P(StatesTest, ThePanelsLineIsOnePointOfWhiteInsideItsEdge) {
    showOnlyAFolder();
    openFolder();
    settle();
    const QImage image = picture();
    const QRectF panel = drawnRect(only(u"amberquill::FrostedSlab"_s));
    const double x = panel.left() + 60;
    const QColor line = at(image, {x, panel.bottom() - 0.5});
    const QColor body = at(image, {x, panel.bottom() - 1.5});
    EXPECT_TRUE(isAbout(line, lightened(body, 0.18), 6));
    EXPECT_TRUE(isAbout(at(image, {x, panel.bottom() - 4}), body, 3));
    EXPECT_LT(at(image, {x, panel.bottom() + 1.5}).lightness(), body.lightness()) << "its shadow";
}

TEST_P(StatesTest, NoOutlineOfThePageIsSeenThroughThePanel) {
    showWithFolder(12);
    openFolder();
    settle();
    const QImage image = picture();
    // Above the title, where there is nothing on the panel itself.
    const QRectF panel = drawnRect(only(u"amberquill::FrostedSlab"_s)).adjusted(50, 4, -50, 0);
    const QRect area(pixelOf(panel.topLeft()), pixelOf({panel.right(), panel.top() + 14}));
    // Compares both sides of lines as long as a dither cell, in which two levels are mixed.
    constexpr int length = 8;
    double sharpest = 0;
    for (int y = area.top(); y + length < area.bottom(); ++y) {
        for (int x = area.left(); x + length < area.right(); ++x) {
            std::array<int, 6> steps{};
            for (int i = 0; i < length; ++i) {
                const auto add = [&](std::size_t first, const QPoint& from, const QPoint& to) {
                    const QRgb before = image.pixel(from);
                    const QRgb after = image.pixel(to);
                    steps.at(first) += qRed(after) - qRed(before);
                    steps.at(first + 1) += qGreen(after) - qGreen(before);
                    steps.at(first + 2) += qBlue(after) - qBlue(before);
                };
                add(0, {x, y + i}, {x + 1, y + i});
                add(3, {x + i, y}, {x + i, y + 1});
            }
            for (const int step : steps) {
                sharpest = std::max(sharpest, std::abs(step) / static_cast<double>(length));
            }
        }
    }
    EXPECT_LE(sharpest, 2);
}

TEST_P(StatesTest, WhereThePanelsColoursChangeSlowlyNeighbouringPixelsMixTwoLevels) {
    showWithFolder(12);
    openFolder();
    settle();
    const QImage image = picture();
    // To the left and right of the icons only the frost is seen.
    const QRectF panel = drawnRect(only(u"amberquill::FrostedSlab"_s));
    constexpr int block = 8;
    int blocks = 0;
    int plain = 0;
    for (const double left : {panel.left() + 3, panel.right() - 23}) {
        const QRect area(pixelOf({left, panel.top() + 60}), pixelOf({left + 20, panel.bottom() - 60}));
        for (int y = area.top(); y + block <= area.bottom(); y += block) {
            for (int x = area.left(); x + block <= area.right(); x += block) {
                std::array<int, 3> lowest{255, 255, 255};
                std::array<int, 3> highest{};
                for (int i = 0; i < block * block; ++i) {
                    const QRgb pixel = image.pixel(x + i % block, y + i / block);
                    const std::array<int, 3> colour{qRed(pixel), qGreen(pixel), qBlue(pixel)};
                    for (std::size_t c = 0; c < 3; ++c) {
                        lowest.at(c) = std::min(lowest.at(c), colour.at(c));
                        highest.at(c) = std::max(highest.at(c), colour.at(c));
                    }
                }
                for (std::size_t c = 0; c < 3; ++c) {
                    ++blocks;
                    plain += highest.at(c) == lowest.at(c) ? 1 : 0;
                }
            }
        }
    }
    ASSERT_GT(blocks, 100);
    EXPECT_LT(plain, blocks / 10) << "of " << blocks;
}

TEST_P(StatesTest, ThePanelsShadowLiesBelowIt) {
    showOnlyAFolder();
    openFolder();
    settle();
    const QImage image = picture();
    const QRectF panel = drawnRect(only(u"amberquill::FrostedSlab"_s));
    const auto darkening = [&](const QPointF& point) {
        return under(point).blue() - at(image, point).blue();
    };
    const double x = panel.left() + 40;
    EXPECT_GT(darkening({x, panel.bottom() + 8}), darkening({x, panel.top() - 8}));
    EXPECT_GT(darkening({x, panel.bottom() + 8}), 2);
    EXPECT_NEAR(darkening({x, panel.bottom() + 44}), 0, 2) << "10 lower, and 30 beyond that it has died out";
}

TEST_P(StatesTest, TheSmallerTilesOfACrowdedFolderStandAtTheirCells) {
    showWithFolder(20);
    installed_ = apps(140);
    model_->willShow();
    queue_.runPosted();
    Folder folder = *model_->folder(id_);
    ASSERT_EQ(folder.apps.size(), 20);
    openFolder();
    settle();
    const FolderMetrics metrics = FolderMetrics::of(20, model_->metrics());
    for (int i = 0; i < 20; ++i) {
        const QQuickItem* icon = nullptr;
        for (const QQuickItem* tile : drawn(u"IconTile"_s)) {
            if (tile->property("itemId").toString() == LaunchItem::app(path(41 + i)).id()) {
                icon = tile;
            }
        }
        ASSERT_NE(icon, nullptr) << i;
        const QSizeF size = model_->metrics().tileRect({}).size() * metrics.scale;
        const QPointF corner = metrics.cellCenter(i) - QPointF(size.width(), size.height()) / 2;
        expectRect(drawnRect(icon), {corner, size}, pixel());
    }
}

TEST_P(StatesTest, ADraggedIconIsOutOfItsCellAndATenthLargerUntilItIsDropped) {
    showWith(80);
    const GridMetrics metrics = model_->metrics();
    const QPointF to = metrics.cellCenter(11) + QPointF(metrics.cellSize().width() / 2, 3);
    drag(3, to);
    finishIcons();
    EXPECT_EQ(drawnOpacity(iconOf(4)), 0);
    EXPECT_EQ(drawnOpacity(iconOf(3)), 1);
    const QString hand = u"FloatingIcon"_s;
    const auto held = [&] {
        QQuickItem* lifted = only(hand)->childItems().constLast();
        return drawnRect(lifted);
    };
    const auto shadow = [&] { return drawnOpacity(only(u"amberquill::IconShadow"_s)); };
    ASSERT_NE(only(hand), nullptr);
    expectRect(held(), around(to, metrics.iconSize() * 1.1), 1.5 * pixel());
    EXPECT_EQ(shadow(), 1);
    model_->pointerEnded({start_, to});
    double lastWidth = held().width() + 0.001;
    for (int frame = 0; frame < 9; ++frame) {
        advance(1.0 / 60);
        EXPECT_LT(held().width(), lastWidth);
        lastWidth = held().width();
    }
    EXPECT_NEAR(held().width(), metrics.iconSize(), 1.5);
    EXPECT_LT(shadow(), 0.05);
    settle();
    EXPECT_EQ(only(hand), nullptr);
    EXPECT_EQ(drawnOpacity(iconOf(4)), 1);
    expectRect(drawnRect(iconOf(4)), around(iconCentre(3), metrics.iconSize()), pixel());
}

TEST_P(StatesTest, AnApplicationMarkedForAMergeShrinksTo78PerCentInAnOutlineOf95) {
    showWith(80);
    const double icon = model_->metrics().iconSize();
    drag(3, iconCentre(4));
    EXPECT_EQ(drawnRect(iconOf(5)).width(), drawnRect(iconOf(6)).width());
    advance(0.19);
    ASSERT_EQ(model_->mergeTargetID(), LaunchItem::app(path(5)).id());
    advance(1);
    expectRect(drawnRect(iconOf(5)), around(iconCentre(4), icon * 0.78), 1.5 * pixel());
    QQuickItem* outline = nullptr;
    for (QQuickItem* shape : drawn(u"amberquill::RoundedShape"_s)) {
        if (drawnRect(shape).contains(iconCentre(4))) {
            outline = shape;
        }
    }
    ASSERT_NE(outline, nullptr);
    expectRect(drawnRect(outline), around(iconCentre(4), icon * 0.95), 1.5 * pixel());
    EXPECT_NEAR(outline->property("radius").toDouble(), icon * 0.2, 0.12);
    EXPECT_NEAR(outline->property("fill").value<QColor>().alphaF(), 0.26, 0.003);
    EXPECT_EQ(drawnOpacity(outline), 1);
    dragTo(start_, model_->metrics().cellCenter(20));
    advance(1);
    expectRect(drawnRect(iconOf(5)), around(iconCentre(4), icon), pixel());
}

TEST_P(StatesTest, AFolderMarkedForAMergeGrowsTo112PerCentWithoutAnOutline) {
    showWithFolder(4);
    const double icon = model_->metrics().iconSize();
    drag(0, iconCentre(2));
    advance(1);
    ASSERT_EQ(model_->mergeTargetID(), u"f:"_s + id_.toString(QUuid::WithoutBraces).toUpper());
    expectRect(drawnRect(only(u"FolderIcon"_s)), around(iconCentre(2), icon * 1.12), 1.5 * pixel());
    int shapes = 0;
    for (const QQuickItem* shape : drawn(u"amberquill::RoundedShape"_s)) {
        shapes += drawnRect(shape).contains(iconCentre(2)) ? 1 : 0;
    }
    EXPECT_EQ(shapes, 1) << "its own body";
}

TEST_P(StatesTest, APressedFolderIsDarkerAllOver) {
    showWithFolder(1);
    const double body = model_->metrics().iconSize() * 0.82;
    const QPointF inside = iconCentre(2) + QPointF(body * 0.3, body * 0.3);
    EXPECT_TRUE(isAbout(at(picture(), inside), lightened(under(inside), 0.2), 3));
    press(iconCentre(2));
    const auto mixed = [](int component) {
        return static_cast<int>(std::lround(component * 0.8 + 0.2 * 0.7 * 255));
    };
    const QColor wash = under(inside);
    EXPECT_TRUE(isAbout(at(picture(), inside),
                        QColor(mixed(wash.red()), mixed(wash.green()), mixed(wash.blue())), 3));
}

TEST_P(StatesTest, TheFirstResultStandsOnARoundedRectangle8PointsWiderThanItsTile) {
    showWith(80);
    const GridMetrics metrics = model_->metrics();
    const auto marks = [&] {
        std::vector<QQuickItem*> found;
        for (QQuickItem* shape : drawn(u"amberquill::RoundedShape"_s)) {
            if (shape->property("radius").toDouble() == 18) {
                found.push_back(shape);
            }
        }
        return found;
    };
    EXPECT_TRUE(marks().empty());
    model_->setSearchText(u"App 4"_s);
    ASSERT_EQ(marks().size(), 1U);
    const QRectF tile = metrics.tileRect(metrics.cellCenter(0));
    const double width = metrics.cellSize().width() - 8;
    expectRect(drawnRect(marks()[0]),
               QRectF(tile.center().x() - width / 2, tile.top(), width, tile.height()).adjusted(-8, -8, 8, 8),
               1.5 * pixel());
    const QPointF inside = QPointF(tile.center().x(), tile.top() - 4);
    EXPECT_TRUE(isAbout(at(picture(), inside), lightened(under(inside), 0.16), 3));
}

TEST_P(StatesTest, TheCapsuleAndTheButtonsHaveTheirLinesAndRoundEnds) {
    showWith(3);
    const QImage image = picture();
    const double left = (contentSize_.width() - 392) / 2.0;
    const QPointF line(left + 112 + 140, 40.5);
    EXPECT_TRUE(isAbout(at(image, line), lightened(lightened(under(line), 0.18), 0.15), 4));
    for (const double x : {left + 113.0, left + 56 + 1.5, left + 1.5}) {
        EXPECT_TRUE(isAbout(at(image, {x, 42}), under({x, 42}), 3)) << "outside of the round end";
        EXPECT_TRUE(isAbout(at(image, {x, 82}), under({x, 82}), 3));
    }
    const QPointF end(left + 112 + 0.5, 62);
    EXPECT_GT(at(image, end).lightness(), under(end).lightness() + 20);
}

TEST_P(StatesTest, ADotIsACircleOf8Points) {
    showWith(80);
    const QImage image = picture();
    const double first = std::round((contentSize_.width() - 66) / 2.0 * ratio()) / ratio() + 9;
    const double y = contentSize_.height() - 35;
    for (const auto& [x, white] :
         {std::pair(first, 0.95), std::pair(first + 24, 0.35), std::pair(first + 48, 0.35)}) {
        for (const QPointF offset :
             {QPointF(0, 0), QPointF(2, 0), QPointF(-2, 0), QPointF(0, 2), QPointF(0, -2)}) {
            const QPointF point = QPointF(x, y) + offset;
            EXPECT_TRUE(isAbout(at(image, point), lightened(under(point), white), 3)) << x;
        }
        for (const QPointF offset : {QPointF(5, 0), QPointF(-5.5, 0), QPointF(0, 5), QPointF(3.6, 3.6)}) {
            const QPointF point = QPointF(x, y) + offset;
            EXPECT_TRUE(isAbout(at(image, point), under(point), 8)) << x;
        }
    }
}

TEST_P(StatesTest, EachThemeHasItsColours) {
    showWith(3);
    struct Theme {
        BackgroundTheme theme;
        QColor top;
        QColor bottom;
    };
    const auto colour = [](double red, double green, double blue) {
        return QColor::fromRgbF(static_cast<float>(red), static_cast<float>(green), static_cast<float>(blue));
    };
    for (const Theme& each :
         {Theme{BackgroundTheme::Purple, colour(0.40, 0.25, 0.62), colour(0.14, 0.07, 0.30)},
          Theme{BackgroundTheme::Green, colour(0.13, 0.47, 0.38), colour(0.02, 0.17, 0.14)},
          Theme{BackgroundTheme::Blue, colour(0.18, 0.35, 0.63), colour(0.04, 0.10, 0.28)}}) {
        model_->setBackground(each.theme);
        const QImage image = picture();
        // Over black, at both ends of the gradient. At the bottom there is no glow.
        const auto dimmed = [](const QColor& of, double glow) {
            const auto component = [glow](double value) {
                return static_cast<int>(std::lround((value * 0.58 * (1 - glow) + glow) * 255));
            };
            return QColor(component(of.redF()), component(of.greenF()), component(of.blueF()));
        };
        const double aside = contentSize_.width() / 2.0;
        EXPECT_TRUE(
            isAbout(image.pixelColor(0, 0), dimmed(each.top, 0.12 * std::max(0.0, 1 - aside / 900)), 2));
        const double away = std::hypot(aside, contentSize_.height());
        EXPECT_TRUE(isAbout(image.pixelColor(image.width() - 1, image.height() - 1),
                            dimmed(each.bottom, 0.12 * std::max(0.0, 1 - away / 900)), 2));
    }
}

TEST_P(StatesTest, OnlyTheCircleOfAButtonTakesClicks) {
    showWith(3);
    QCoreApplication::processEvents();
    const int left = (contentSize_.width() - 392) / 2;
    const auto click = [this](int x, int y) { QTest::mouseClick(window_.get(), Qt::LeftButton, {}, {x, y}); };
    click(left + 22, 62);
    EXPECT_EQ(controller_->menusShown, 1);
    EXPECT_TRUE(controller_->hides.empty());
    click(left + 4, 43);
    EXPECT_EQ(controller_->menusShown, 1);
    EXPECT_EQ(controller_->hides.size(), 1U) << "empty space";
    click(left + 112 + 2, 42);
    EXPECT_EQ(controller_->hides.size(), 2U) << "beside the capsule's round end";
    click(left + 112 + 10, 62);
    EXPECT_EQ(controller_->hides.size(), 2U);
    EXPECT_EQ(window_->activeFocusItem(), item(u"searchField"_s));
    const std::size_t before = model_->displayedItems().size();
    click(left + 56 + 22, 62);
    EXPECT_EQ(model_->displayedItems().size(), before + 1) << "the second button makes a folder";
}

TEST_P(StatesTest, AButtonUnderThePointerIsBrighter) {
    showWith(3);
    const double left = (contentSize_.width() - 392) / 2.0;
    const QPointF point(left + 22, 46);
    EXPECT_TRUE(isAbout(at(picture(), point), lightened(under(point), 0.18), 1));
    QTest::mouseMove(window_.get(), QPoint(static_cast<int>(left) + 22, 62));
    EXPECT_TRUE(isAbout(at(picture(), point), lightened(under(point), 0.28), 1));
    QTest::mouseMove(window_.get(), QPoint(5, 300));
    EXPECT_TRUE(isAbout(at(picture(), point), lightened(under(point), 0.18), 1));
}

TEST_P(StatesTest, TheWholeSquareOfADotTakesClicks) {
    showWith(80);
    QCoreApplication::processEvents();
    const int first = (contentSize_.width() - 66) / 2;
    const int bottom = contentSize_.height() - 26;
    QTest::mouseClick(window_.get(), Qt::LeftButton, {}, {first + 48 + 16, bottom - 2});
    EXPECT_EQ(model_->page(), 2);
    QTest::mouseClick(window_.get(), Qt::LeftButton, {}, {first + 24 + 2, bottom - 16});
    EXPECT_EQ(model_->page(), 1);
    EXPECT_TRUE(controller_->hides.empty());
}

TEST_P(StatesTest, TheDotsAreHiddenWhileSearchingAndWhileAFolderIsOpen) {
    showWithFolder(4);
    const QString dots = u"PageDots"_s;
    EXPECT_NE(only(dots), nullptr);
    model_->setSearchText(u"App"_s);
    EXPECT_EQ(only(dots), nullptr);
    model_->setSearchText({});
    EXPECT_NE(only(dots), nullptr);
    openFolder();
    EXPECT_EQ(only(dots), nullptr);
    model_->closeFolder();
    settle();
    EXPECT_NE(only(dots), nullptr);
}

TEST_P(StatesTest, ALargerWindowIsLaidOutAtOnce) {
    showWith(80);
    const QSize larger = contentSize_ + QSize(200, 100);
    window_->resize(larger);
    QCoreApplication::processEvents();
    EXPECT_EQ(model_->size(), QSizeF(larger));
    settle();
    const GridMetrics metrics = model_->metrics();
    expectRect(drawnRect(iconOf(20)), around(iconCentre(19), metrics.iconSize()), pixel());
}
