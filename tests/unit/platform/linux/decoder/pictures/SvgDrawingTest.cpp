#include "platform/linux/decoder/pictures/SvgDrawing.h"
#include "support/BadDrawings.h"
#include "support/IconFiles.h"

#include <QStringConverter>
#include <gtest/gtest.h>

using namespace amberquill;
using namespace amberquill::desktop;

namespace {

constexpr QRgb nothing = 0;

const QByteArray filling = R"(<rect width="100%" height="100%" fill="#f00"/>)";

} // namespace

TEST(SvgDrawing, ADrawingFillsTheRequestedSize) {
    for (const int edge : {1, 16, 96, 120, 257}) {
        const auto image = drawnSvg(redSquare, edge);
        ASSERT_EQ(image.size(), QSize(edge, edge));
        EXPECT_EQ(image.format(), QImage::Format_ARGB32_Premultiplied);
        EXPECT_EQ(image.devicePixelRatio(), 1.0);
        EXPECT_EQ(image.pixel(0, 0), red);
        EXPECT_EQ(image.pixel(edge - 1, edge - 1), red);
    }
}

TEST(SvgDrawing, ProportionsAreKeptAndTheDrawingIsCentred) {
    const auto wide =
        drawnSvg(svg(R"(<rect width="200" height="100" fill="#f00"/>)", R"(viewBox="0 0 200 100")"), 100);
    ASSERT_EQ(wide.size(), QSize(100, 100));
    EXPECT_EQ(wide.pixel(50, 24), nothing);
    EXPECT_EQ(wide.pixel(50, 25), red);
    EXPECT_EQ(wide.pixel(50, 74), red);
    EXPECT_EQ(wide.pixel(50, 75), nothing);
    EXPECT_EQ(wide.pixel(0, 50), red);
    // Without a view box the document's size counts.
    const auto tall =
        drawnSvg(svg(R"(<rect width="10" height="20" fill="#f00"/>)", R"(width="10" height="20")"), 100);
    ASSERT_EQ(tall.size(), QSize(100, 100));
    EXPECT_EQ(tall.pixel(24, 50), nothing);
    EXPECT_EQ(tall.pixel(25, 50), red);
    EXPECT_EQ(tall.pixel(74, 99), red);
    EXPECT_EQ(tall.pixel(75, 50), nothing);
}

TEST(SvgDrawing, AnyViewBoxIsDrawnCompletely) {
    for (const auto* const box : {"0 0 1 1", "0 0 0.01 0.01", "-50 -50 100 100", "0 0 90000 90000"}) {
        const auto numbers = QByteArray(box).split(' ');
        const auto image = drawnSvg(svg("<rect x=\"" + numbers[0] + "\" y=\"" + numbers[1] + "\" width=\"" +
                                            numbers[2] + "\" height=\"" + numbers[3] + "\" fill=\"#f00\"/>",
                                        QByteArray("width=\"48\" height=\"48\" viewBox=\"") + box + '"'),
                                    32);
        ASSERT_EQ(image.size(), QSize(32, 32)) << box;
        EXPECT_EQ(image.pixel(0, 0), red) << box;
        EXPECT_EQ(image.pixel(31, 31), red) << box;
    }
}

TEST(SvgDrawing, ADiagonalIsSmooth) {
    const auto image = drawnSvg(svg(R"(<path d="M0 0 L100 100 L0 100 z" fill="#f00"/>)"), 32);
    ASSERT_FALSE(image.isNull());
    EXPECT_GT(qAlpha(image.pixel(10, 10)), 60);
    EXPECT_LT(qAlpha(image.pixel(10, 10)), 200);
}

TEST(SvgDrawing, TextIsDrawn) {
    EXPECT_FALSE(drawnSvg(svg(R"(<text x="5" y="90" font-size="80">W</text>)"), 64).isNull());
}

TEST(SvgDrawing, AnEmptyDrawingIsNull) {
    EXPECT_TRUE(drawnSvg(svg(""), 32).isNull());
    EXPECT_TRUE(drawnSvg(svg(R"(<rect x="500" width="10" height="10"/>)"), 32).isNull());
    EXPECT_TRUE(drawnSvg(svg(filling, R"(viewBox="0 0 -5 5")"), 32).isNull());
}

TEST(SvgDrawing, AnAnimatedDrawingShowsItsFirstFrame) {
    const auto image = drawnSvg(svg(R"(<rect width="100" height="100" fill="#f00"><animateTransform )"
                                    R"(attributeName="transform" type="rotate" from="0" to="360" begin="0s" )"
                                    R"(dur="1s" repeatCount="indefinite"/></rect>)"),
                                32);
    ASSERT_FALSE(image.isNull());
    EXPECT_EQ(image.pixel(16, 16), red);
}

TEST(SvgDrawing, ATruncatedDrawingIsNull) {
    for (qsizetype size = 0; size < redSquare.size(); ++size) {
        EXPECT_TRUE(drawnSvg(redSquare.first(size), 16).isNull()) << size;
    }
}

TEST(SvgDrawing, AClipPathCuts) {
    const auto image = drawnSvg(svg(R"(<clipPath id="c"><circle cx="50" cy="50" r="50"/></clipPath>)" +
                                    squareOf("red").replace("/>", " clip-path='url(#c)'/>")),
                                100);
    EXPECT_EQ(image.pixel(50, 50), red);
    EXPECT_EQ(image.pixel(2, 2), nothing);
    EXPECT_EQ(image.pixel(97, 97), nothing);
}

TEST(SvgDrawing, AMaskHides) {
    const auto image = drawnSvg(svg(R"(<mask id="m"><rect width="50" height="100" fill="white"/></mask>)" +
                                    squareOf("red").replace("/>", " mask='url(#m)'/>")),
                                100);
    EXPECT_EQ(image.pixel(25, 50), red);
    EXPECT_EQ(image.pixel(75, 50), nothing);
}

TEST(SvgDrawing, AFilterIsDrawn) {
    const auto image =
        drawnSvg(svg(R"(<filter id="f"><feGaussianBlur stdDeviation="10"/></filter>)"
                     R"(<rect x="30" y="30" width="40" height="40" fill="red" filter='url(#f)'/>)"),
                 100);
    EXPECT_GT(qAlpha(image.pixel(50, 50)), 180);
    EXPECT_GT(qAlpha(image.pixel(50, 28)), 50); // outside of the shape
    EXPECT_LT(qAlpha(image.pixel(50, 28)), 200);
}

TEST(SvgDrawing, APictureInTheDocumentIsDrawn) {
    for (const char* const format : {"png", "jpeg"}) {
        const auto data = encoded(filledImage(10, 10, Qt::red), format).toBase64();
        const auto image = drawnSvg(svg(R"(<image width="100" height="100" xlink:href="data:image/)" +
                                        QByteArray(format) + ";base64," + data + "\"/>"),
                                    32);
        ASSERT_FALSE(image.isNull()) << format;
        EXPECT_GE(qRed(image.pixel(16, 16)), 250) << format;
    }
}

TEST(SvgDrawing, ADrawingWithoutASizeHasThatOfItsContent) {
    const auto image = drawnSvg(svg(R"(<rect width="40" height="20" fill="red"/>)", ""), 100);
    EXPECT_EQ(image.pixel(50, 24), nothing);
    EXPECT_EQ(image.pixel(50, 25), red);
    EXPECT_EQ(image.pixel(99, 74), red);
    EXPECT_EQ(image.pixel(50, 75), nothing);
}

TEST(SvgDrawing, AnInchIs96Pixels) {
    const auto image =
        drawnSvg(svg(R"(<rect width="0.5in" height="1in" fill="red"/>)", R"(width="96" height="96")"), 96);
    EXPECT_EQ(image.pixel(47, 95), red);
    EXPECT_EQ(image.pixel(48, 95), nothing);
}

TEST(SvgDrawing, ADrawingOfOddProportionsBeginsOnAWholePixel) {
    const auto image =
        drawnSvg(svg(R"(<rect width="100" height="33" fill="red"/>)", R"(viewBox="0 0 100 33")"), 120);
    EXPECT_EQ(image.pixel(60, 39), nothing);
    EXPECT_EQ(image.pixel(60, 40), red);
    EXPECT_EQ(image.pixel(60, 78), red);
    EXPECT_GT(qAlpha(image.pixel(60, 79)), 100); // 39.6 pixels high
    EXPECT_LT(qAlpha(image.pixel(60, 79)), 200);
    EXPECT_EQ(image.pixel(60, 80), nothing);
}

TEST(SvgDrawing, EveryUnicodeEncodingIsRead) {
    using enum QStringConverter::Encoding;
    for (const auto encoding : {Utf8, Utf16BE, Utf16LE}) {
        QStringEncoder encoder(encoding, QStringConverter::Flag::WriteBom);
        const QByteArray bytes = encoder(QString::fromUtf8(redSquare));
        const auto image = drawnSvg(bytes, 16);
        ASSERT_FALSE(image.isNull()) << static_cast<int>(encoding);
        EXPECT_EQ(image.pixel(8, 8), red);
    }
}

TEST(Gunzip, CompressedBytesAreRestored) {
    for (const auto& text : {QByteArray(), QByteArray("a"), QByteArray(1'000'000, 'x'), redSquare}) {
        EXPECT_EQ(gunzipped(gzipped(text), 1'000'000), text);
    }
}

TEST(Gunzip, TooLargeContentIsRefused) {
    const auto bytes = gzipped(QByteArray(1'000, 'x'));
    EXPECT_TRUE(gunzipped(bytes, 1'000));
    EXPECT_FALSE(gunzipped(bytes, 999));
    EXPECT_FALSE(gunzipped(compressedBomb(), 1'000'000));
}

TEST(Gunzip, ABrokenOrTruncatedFileIsRefused) {
    const auto whole = gzipped(redSquare);
    for (qsizetype size = 0; size < whole.size(); ++size) {
        EXPECT_FALSE(gunzipped(whole.first(size), 10'000)) << size;
    }
    EXPECT_FALSE(gunzipped("\x1F\x8B garbage", 10'000));
    EXPECT_FALSE(gunzipped(redSquare, 10'000));
}

TEST(SvgText, ATextElementIsFound) {
    for (const auto* const body :
         {"<text>A</text>", "<text/>", "<text x='1'>A</text>", "<text\n>A</text>", "<g><text\tx='1'/></g>",
          "<svg:text>A</svg:text>", "text text:text <s:text>"}) {
        EXPECT_TRUE(mayHoldText(svg(body))) << body;
    }
}

TEST(SvgText, OtherWordsAreNotText) {
    for (const auto* const body :
         {"", "text", "<textPath/>", "<context>", "<g id='text'/>", "<path style='text-anchor:end'/>",
          "<g a:text='1'/>", "<g style='a:text '/>", "<desc>: text </desc>", "<g x='<text'/>"}) {
        EXPECT_FALSE(mayHoldText(svg(body))) << body;
    }
    EXPECT_FALSE(mayHoldText(""));
    EXPECT_FALSE(mayHoldText("<text"));
}

TEST(SvgText, WideCharactersAreRead) {
    using enum QStringConverter::Encoding;
    for (const auto encoding : {Utf16BE, Utf16LE, Utf32BE, Utf32LE}) {
        QStringEncoder encoder(encoding);
        EXPECT_TRUE(mayHoldText(encoder(QString::fromUtf8(svg("<text>A</text>")))));
        EXPECT_FALSE(mayHoldText(encoder(QString::fromUtf8(redSquare))));
    }
}
