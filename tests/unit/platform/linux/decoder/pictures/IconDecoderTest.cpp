#include "platform/linux/decoder/pictures/IconDecoder.h"

#include "platform/linux/decoder/channel/IconBounds.h"
#include "support/IconFiles.h"

#include <gtest/gtest.h>
#include <thread>

using namespace amberquill;
using namespace amberquill::desktop;

namespace {

QImage decoded(const QByteArray& bytes, int edge) {
    return decodedIcon(bytes, edge, Fonts::Present).image;
}

QRgb centre(const QImage& image) {
    return image.pixel(image.width() / 2, image.height() / 2);
}

// A file with a red, a green and a blue picture of these sizes.
QByteArray threeSizes(int redEdge, int greenEdge, int blueEdge) {
    return icns({icnsChunk("ic07", png(redEdge, redEdge, QColor(255, 0, 0))),
                 icnsChunk("ic08", png(greenEdge, greenEdge, QColor(0, 255, 0))),
                 icnsChunk("ic09", png(blueEdge, blueEdge, QColor(0, 0, 255)))});
}

} // namespace

TEST(IconDecoder, EveryFormatIsDecodedInTheRequestedSize) {
    const auto picture = filledImage(64, 64, QColor(255, 0, 0));
    for (const auto& bytes :
         {encoded(picture, "png"), encoded(picture, "webp"), encoded(picture, "tiff"),
          encoded(picture, "xpm"), encoded(picture, "ico"), encoded(picture, "jpeg"), redSquare,
          gzipped(redSquare), icns({icnsChunk("ic12", encoded(picture, "png"))})}) {
        for (const int edge : {1, 48, 64, 120}) {
            const auto image = decoded(bytes, edge);
            ASSERT_EQ(image.size(), QSize(edge, edge)) << bytes.first(8).toStdString();
            EXPECT_EQ(image.format(), QImage::Format_ARGB32_Premultiplied);
            EXPECT_EQ(image.devicePixelRatio(), 1.0);
            EXPECT_GE(qRed(centre(image)), 250);
            EXPECT_LE(qGreen(centre(image)), 5);
        }
    }
}

TEST(IconDecoder, OfSeveralSizesTheExactOneIsTakenThenTheNextLargerThenTheLargest) {
    EXPECT_EQ(centre(decoded(threeSizes(32, 64, 128), 64)), green);
    EXPECT_EQ(centre(decoded(threeSizes(128, 64, 32), 48)), green);
    EXPECT_EQ(centre(decoded(threeSizes(16, 64, 32), 100)), green);
    EXPECT_EQ(centre(decoded(threeSizes(512, 256, 16), 17)), green);
}

TEST(IconDecoder, ABrokenSizeIsReplacedByTheNextBest) {
    const auto bytes =
        icns({icnsChunk("ic07", pngThatClaims(64, 64)), icnsChunk("ic08", png(128, 128, Qt::blue))});
    EXPECT_EQ(centre(decoded(bytes, 64)), blue);
}

TEST(IconDecoder, APackedSizeCountsLikeOthers) {
    const auto planes = QByteArray(4, '\0') + icnsRepeated('\xFF', 128 * 128) +
                        icnsRepeated('\0', 128 * 128) + icnsRepeated('\0', 128 * 128);
    EXPECT_EQ(
        centre(decoded(icns({icnsChunk("it32", planes), icnsChunk("ic11", png(32, 32, Qt::blue))}), 120)),
        red);
}

TEST(IconDecoder, TheFormatIsDetectedFromTheBytes) {
    // Files have no names here. The bytes alone tell the format.
    EXPECT_EQ(centre(decoded(png(16, 16, QColor(0, 255, 0)), 16)), green);
    EXPECT_TRUE(decoded("#!/bin/sh\nexit 0\n", 16).isNull());
    EXPECT_TRUE(decoded(gzipped(png(16, 16)), 16).isNull());
    EXPECT_TRUE(decoded(gzipped(gzipped(redSquare)), 16).isNull());
    EXPECT_TRUE(decoded("<html><body/></html>", 16).isNull());
}

TEST(IconDecoder, BoundsAreKept) {
    EXPECT_TRUE(decoded(redSquare, 0).isNull());
    EXPECT_TRUE(decoded(redSquare, -1).isNull());
    EXPECT_TRUE(decoded(redSquare, maximumIconEdge + 1).isNull());
    EXPECT_FALSE(decoded(redSquare, maximumIconEdge).isNull());
    EXPECT_TRUE(decoded(png(16, 16) + QByteArray(maximumIconBytes, '\0'), 16).isNull());
    EXPECT_TRUE(decoded(gzipped(redSquare + QByteArray(maximumIconBytes, ' ')), 16).isNull());
    EXPECT_TRUE(decoded(icns({icnsChunk("ic07", pngThatClaims(30'000, 30'000))}), 16).isNull());
    EXPECT_TRUE(decoded(QByteArray(), 16).isNull());
}

TEST(IconDecoder, AnExtremeShapeIsFitted) {
    const auto image = decoded(png(4'000, 1), 64);
    ASSERT_EQ(image.size(), QSize(64, 64));
    EXPECT_EQ(image.pixel(32, 31), red);
    EXPECT_EQ(image.pixel(32, 33), 0U);
}

TEST(IconDecoder, ThreadsDecodeAtOnce) {
    const auto raster = encoded(filledImage(256, 256, QColor(255, 0, 0)), "png");
    const auto withText = svg(R"(<rect width="100" height="100" fill="#f00"/><text x="5" y="90">W</text>)");
    std::atomic<int> right = 0;
    std::vector<std::thread> threads;
    for (int thread = 0; thread < 4; ++thread) {
        threads.emplace_back([&] {
            for (int i = 0; i < 20; ++i) {
                for (const auto& bytes : {raster, redSquare, withText, gzipped(redSquare)}) {
                    right += decoded(bytes, 100).pixel(50, 10) == red ? 1 : 0;
                }
            }
        });
    }
    for (auto& thread : threads) {
        thread.join();
    }
    EXPECT_EQ(right, 4 * 20 * 4);
}

TEST(IconDecoder, ADrawingWithTextNeedsFonts) {
    const auto withText = svg(R"(<text x="5" y="90" font-size="80">W</text>)");
    for (const auto& bytes : {withText, gzipped(withText)}) {
        const auto without = decodedIcon(bytes, 64, Fonts::Absent);
        EXPECT_TRUE(without.needsFonts);
        EXPECT_TRUE(without.image.isNull());
        const auto with = decodedIcon(bytes, 64, Fonts::Present);
        EXPECT_FALSE(with.needsFonts);
        EXPECT_FALSE(with.image.isNull());
    }
    const auto without = decodedIcon(redSquare, 64, Fonts::Absent);
    EXPECT_FALSE(without.needsFonts);
    EXPECT_EQ(centre(without.image), red);
}
