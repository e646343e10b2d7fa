#include "platform/linux/decoder/pictures/SvgDrawing.h"

#include "support/IconFiles.h"

#include <gtest/gtest.h>

using namespace amberquill;
using namespace amberquill::desktop;

namespace {

constexpr QRgb nothing = 0;

const QByteArray filling = R"(<rect width="100%" height="100%" fill="#f00"/>)";

} // namespace

TEST(SvgDrawing, ADrawingFillsExactlyThePixelsAskedFor) {
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
    // Without a view box the size in the document says the same.
    const auto tall =
        drawnSvg(svg(R"(<rect width="10" height="20" fill="#f00"/>)", R"(width="10" height="20")"), 100);
    ASSERT_EQ(tall.size(), QSize(100, 100));
    EXPECT_EQ(tall.pixel(24, 50), nothing);
    EXPECT_EQ(tall.pixel(25, 50), red);
    EXPECT_EQ(tall.pixel(74, 99), red);
    EXPECT_EQ(tall.pixel(75, 50), nothing);
}

TEST(SvgDrawing, AViewBoxOfAnySizeAndPlaceIsDrawnWhole) {
    for (const auto* const box : {"0 0 1 1", "0 0 0.001 0.001", "-50 -50 100 100", "0 0 90000 90000"}) {
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

TEST(SvgDrawing, ADrawingOfNothingIsNone) {
    EXPECT_TRUE(drawnSvg(svg(""), 32).isNull());
    EXPECT_TRUE(drawnSvg(svg(R"(<rect x="500" width="10" height="10"/>)"), 32).isNull());
    EXPECT_TRUE(drawnSvg(svg(filling, R"(viewBox="0 0 -5 5")"), 32).isNull());
}

TEST(SvgDrawing, AnAnimatedDrawingStandsStill) {
    const auto image = drawnSvg(svg(R"(<rect width="100" height="100" fill="#f00"><animateTransform )"
                                    R"(attributeName="transform" type="rotate" from="0" to="360" begin="0s" )"
                                    R"(dur="1s" repeatCount="indefinite"/></rect>)"),
                                32);
    ASSERT_FALSE(image.isNull());
    EXPECT_EQ(image.pixel(16, 16), red);
}

TEST(SvgDrawing, WhatTheInspectionRefusesIsNotDrawn) {
    EXPECT_TRUE(drawnSvg(svg(filling + R"(<image href="/dev/zero"/>)"), 32).isNull());
    EXPECT_TRUE(drawnSvg(svg(R"(<g id="a"><use xlink:href="#a"/></g>)" + filling), 32).isNull());
}

TEST(SvgDrawing, ADrawingThatEndsAnywhereIsNone) {
    for (qsizetype size = 0; size < redSquare.size(); ++size) {
        EXPECT_TRUE(drawnSvg(redSquare.first(size), 16).isNull()) << size;
    }
}
