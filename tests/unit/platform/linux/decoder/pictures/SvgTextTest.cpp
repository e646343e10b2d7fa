#include "platform/linux/decoder/pictures/SvgDrawing.h"

#include "support/IconFiles.h"

#include <QStringConverter>
#include <gtest/gtest.h>

using namespace amberquill;
using namespace amberquill::desktop;

TEST(SvgText, AnElementForTextIsFound) {
    for (const auto* const body :
         {"<text>A</text>", "<text/>", "<text x='1'>A</text>", "<text\n>A</text>", "<g><text\tx='1'/></g>",
          "<svg:text>A</svg:text>", "text text:text <s:text>"}) {
        EXPECT_TRUE(mayHoldText(svg(body))) << body;
    }
}

TEST(SvgText, OtherWordsAreNone) {
    for (const auto* const body :
         {"", "text", "<textPath/>", "<context>", "<g id='text'/>", "<path style='text-anchor:end'/>",
          "<g a:text='1'/>", "<g style='a:text '/>", "<desc>: text </desc>", "<g x='<text'/>"}) {
        EXPECT_FALSE(mayHoldText(svg(body))) << body;
    }
    EXPECT_FALSE(mayHoldText(""));
    EXPECT_FALSE(mayHoldText("<text"));
}

TEST(SvgText, WideLettersAreRead) {
    using enum QStringConverter::Encoding;
    for (const auto encoding : {Utf16BE, Utf16LE, Utf32BE, Utf32LE}) {
        QStringEncoder encoder(encoding);
        EXPECT_TRUE(mayHoldText(encoder(QString::fromUtf8(svg("<text>A</text>")))));
        EXPECT_FALSE(mayHoldText(encoder(QString::fromUtf8(redSquare))));
    }
}
