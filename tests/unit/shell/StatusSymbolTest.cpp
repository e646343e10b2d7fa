#include "shell/StatusSymbol.h"

#include <QImage>
#include <QPainter>
#include <algorithm>
#include <array>
#include <gtest/gtest.h>

using namespace amberquill;

namespace {

constexpr std::array allTones = {PanelTone::Unknown, PanelTone::Light, PanelTone::Dark};

QImage panel(const QColor& colour, int edge = 22) {
    QImage image(edge, edge, QImage::Format_ARGB32_Premultiplied);
    image.fill(colour);
    return image;
}

QImage symbolOn(const QColor& colour, PanelTone tone, int edge = 22) {
    QImage image = panel(colour, edge);
    QPainter painter(&image);
    statusSymbol(tone, [] {}).paint(&painter, image.rect());
    return image;
}

// The difference of the darkest and the brightest pixel, from 0 to 255.
int contrast(const QImage& image) {
    int darkest = 255;
    int brightest = 0;
    for (int y = 0; y < image.height(); ++y) {
        for (int x = 0; x < image.width(); ++x) {
            const int gray = qGray(image.pixel(x, y));
            darkest = std::min(darkest, gray);
            brightest = std::max(brightest, gray);
        }
    }
    return brightest - darkest;
}

// The bounding rectangle of the drawing on a transparent image.
QRect coveredPart(const QImage& image) {
    QRect covered;
    for (int y = 0; y < image.height(); ++y) {
        for (int x = 0; x < image.width(); ++x) {
            if (qAlpha(image.pixel(x, y)) != 0) {
                covered |= QRect(x, y, 1, 1);
            }
        }
    }
    return covered;
}

} // namespace

TEST(StatusSymbol, ThePixelsAroundTheSymbolTellThePanelsTone) {
    EXPECT_EQ(panelTone(panel(Qt::white)), PanelTone::Light);
    EXPECT_EQ(panelTone(panel(Qt::black)), PanelTone::Dark);
    for (const PanelTone tone : allTones) {
        EXPECT_EQ(panelTone(symbolOn(QColor(0xDC, 0xDA, 0xD5), tone)), PanelTone::Light);
        EXPECT_EQ(panelTone(symbolOn(QColor(0x80, 0x40, 0x20), tone)), PanelTone::Dark);
    }
}

TEST(StatusSymbol, TheToneOfATransparentPanelIsUnknown) {
    EXPECT_EQ(panelTone({}), PanelTone::Unknown);
    EXPECT_EQ(panelTone(panel(Qt::transparent)), PanelTone::Unknown);
    EXPECT_EQ(panelTone(panel(QColor(0, 0, 0, 100))), PanelTone::Unknown);
    EXPECT_EQ(panelTone(panel(QColor(0, 0, 0, 200))), PanelTone::Dark);
    EXPECT_EQ(panelTone(panel(QColor(255, 255, 255, 200))), PanelTone::Light);
}

TEST(StatusSymbol, TheSymbolContrastsWithItsPanel) {
    EXPECT_GT(contrast(symbolOn(Qt::white, PanelTone::Light)), 200);
    EXPECT_GT(contrast(symbolOn(Qt::black, PanelTone::Dark)), 200);
    EXPECT_GT(contrast(symbolOn(Qt::white, PanelTone::Unknown)), 200);
    EXPECT_GT(contrast(symbolOn(Qt::black, PanelTone::Unknown)), 200);
}

TEST(StatusSymbol, TheSymbolIsCentredAndLeavesTheOutermostPixelsFree) {
    for (int edge = 16; edge <= 64; ++edge) {
        for (const PanelTone tone : allTones) {
            const QImage image = symbolOn(Qt::transparent, tone, edge);
            const QRect covered = coveredPart(image);
            EXPECT_EQ(covered.left(), edge - 1 - covered.right()) << edge;
            EXPECT_EQ(covered.top(), edge - 1 - covered.bottom()) << edge;
            EXPECT_GT(covered.left(), 0) << edge;
            EXPECT_GT(covered.width(), edge / 2) << edge;
        }
    }
}

TEST(StatusSymbol, HostsThatDrawTheItemThemselvesGetPixmaps) {
    int drawn = 0;
    const QIcon icon = statusSymbol(PanelTone::Unknown, [&drawn] { ++drawn; });
    const QImage picture = icon.pixmap(22).toImage();
    EXPECT_EQ(drawn, 1);
    EXPECT_EQ(picture.pixelColor(0, 0).alpha(), 0);
    EXPECT_EQ(picture.pixelColor(11, 11), QColor(Qt::white));
    EXPECT_TRUE(icon.name().isEmpty()) << "no theme here has the symbolic icon";
}
