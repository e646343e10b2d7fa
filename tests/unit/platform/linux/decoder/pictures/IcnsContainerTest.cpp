#include "platform/linux/decoder/pictures/IcnsContainer.h"

#include "support/IconFiles.h"

#include <gtest/gtest.h>

using namespace amberquill;
using namespace amberquill::desktop;

namespace {

std::vector<int> edges(const QByteArray& file) {
    std::vector<int> all;
    for (const auto& picture : icnsPictures(file)) {
        all.push_back(picture.edge);
    }
    return all;
}

using Edges = std::vector<int>;

// Planes of one colour, run-length packed.
QByteArray packedColour(int edge, const QColor& colour) {
    const int pixels = edge * edge;
    return icnsRepeated(static_cast<char>(colour.red()), pixels) +
           icnsRepeated(static_cast<char>(colour.green()), pixels) +
           icnsRepeated(static_cast<char>(colour.blue()), pixels);
}

} // namespace

TEST(IcnsContainer, PicturesHaveTheirRealSize) {
    EXPECT_EQ(edges(icns({icnsChunk("TOC ", "xxxxxxxx"), icnsChunk("ic07", png(128, 128)),
                          icnsChunk("ic11", png(32, 32)), icnsChunk("ic08", png(300, 200)),
                          icnsChunk("info", "<plist/>")})),
              (Edges{128, 32, 300}));
}

TEST(IcnsContainer, OldPicturesHaveASeparateAlphaChunk) {
    const auto file = icns({icnsChunk("is32", packedColour(16, QColor(10, 20, 30))),
                            icnsChunk("s8mk", QByteArray(256, '\x40')),
                            icnsChunk("it32", QByteArray(4, '\0') + packedColour(128, QColor(1, 2, 3)))});
    const auto pictures = icnsPictures(file);
    ASSERT_EQ(pictures.size(), 2U);
    const auto small = unpackedIcnsPicture(pictures[0]);
    ASSERT_EQ(small.size(), QSize(16, 16));
    EXPECT_EQ(small.pixel(15, 15), qRgba(10, 20, 30, 0x40));
    const auto large = unpackedIcnsPicture(pictures[1]);
    ASSERT_EQ(large.size(), QSize(128, 128));
    EXPECT_EQ(large.pixel(127, 127), qRgba(1, 2, 3, 255)); // no alpha: opaque
}

TEST(IcnsContainer, PlanesAreUnpackedByteByByte) {
    QByteArray plane;
    for (int i = 0; i < 256; ++i) {
        plane += static_cast<char>(i);
    }
    const auto file =
        icns({icnsChunk("is32", icnsPacked(plane) + icnsRepeated('\x05', 256) + icnsPacked(plane))});
    const auto image = unpackedIcnsPicture(icnsPictures(file).at(0));
    ASSERT_EQ(image.size(), QSize(16, 16));
    EXPECT_EQ(image.pixel(0, 0), qRgba(0, 5, 0, 255));
    EXPECT_EQ(image.pixel(1, 0), qRgba(1, 5, 1, 255));
    EXPECT_EQ(image.pixel(15, 15), qRgba(255, 5, 255, 255));
}

TEST(IcnsContainer, NewerSmallPicturesHaveAnAlphaPlane) {
    const auto file =
        icns({icnsChunk("ic04", "ARGB" + icnsRepeated('\x7F', 256) + packedColour(16, QColor(9, 8, 7)))});
    const auto pictures = icnsPictures(file);
    ASSERT_EQ(pictures.size(), 1U);
    EXPECT_EQ(unpackedIcnsPicture(pictures[0]).pixel(3, 3), qRgba(9, 8, 7, 0x7F));
}

TEST(IcnsContainer, TooShortOrTooLongPlanesAreRefused) {
    const auto whole = packedColour(16, Qt::red);
    for (qsizetype size = 1; size < whole.size(); ++size) {
        const auto file = icns({icnsChunk("is32", whole.first(size))});
        EXPECT_TRUE(unpackedIcnsPicture(icnsPictures(file).at(0)).isNull()) << size;
    }
    const auto overrun = icns({icnsChunk("is32", icnsRepeated('x', 250) + icnsRepeated('x', 130))});
    EXPECT_TRUE(unpackedIcnsPicture(icnsPictures(overrun).at(0)).isNull());
}

TEST(IcnsContainer, UnsupportedPicturesAreLeftOut) {
    EXPECT_EQ(
        edges(
            icns({icnsChunk("ic07", redSquare), icnsChunk("ic08", icns({icnsChunk("ic07", png(9, 9))})),
                  icnsChunk("ic09", QByteArray("\0\0\0\x0CjP  ", 8)), icnsChunk("ICN#", QByteArray(256, 'x')),
                  icnsChunk("ic05", "no planes"), icnsChunk("it32", "xxx")})),
        Edges{});
}

TEST(IcnsContainer, InvalidLengthsEndTheFile) {
    const auto good = icnsChunk("ic07", png(8, 8));
    EXPECT_EQ(edges(icns({good, "ic08" + bigEndian(0), good})), Edges{8});
    EXPECT_EQ(edges(icns({good, "ic08" + bigEndian(7), good})), Edges{8});
    EXPECT_EQ(edges(icns({good, "ic08" + bigEndian(0xFFFFFFFFU), good})), Edges{8});
    EXPECT_EQ(edges("icns" + bigEndian(0xFFFFFFFFU) + good), Edges{8}); // the file's own length is ignored
    EXPECT_EQ(edges("icns"), Edges{});
    EXPECT_EQ(edges(""), Edges{});
}

TEST(IcnsContainer, ATruncatedFileGivesItsCompletePictures) {
    const auto whole = icns({icnsChunk("ic11", png(32, 32)), icnsChunk("ic07", png(128, 128))});
    for (qsizetype size = 0; size < whole.size(); ++size) {
        EXPECT_LE(edges(whole.first(size)).size(), 1U) << size;
    }
    EXPECT_EQ(edges(whole), (Edges{32, 128}));
}

TEST(IcnsContainer, TheNumberOfChunksIsBounded) {
    const auto many = icns({icnsChunk("ic07", "").repeated(1'000'000), icnsChunk("ic07", png(8, 8))});
    EXPECT_EQ(edges(many), Edges{});
}
