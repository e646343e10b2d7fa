#include "platform/linux/decoder/pictures/SvgInspection.h"

#include "support/IconFiles.h"

#include <gtest/gtest.h>

using namespace amberquill;
using namespace amberquill::desktop;

namespace amberquill::desktop {

static void PrintTo(SvgVerdict verdict, std::ostream* stream) {
    constexpr std::array names{"Harmless",      "NotSvg",          "TooLarge",         "TooDeep",
                               "TooMuchToDraw", "SuspectEntities", "ExternalReference"};
    *stream << names.at(static_cast<std::size_t>(verdict));
}

} // namespace amberquill::desktop

namespace {

SvgVerdict verdict(const QByteArray& text) {
    return inspectSvg({text.constData(), static_cast<std::size_t>(text.size())});
}

QByteArray times(int count, const QByteArray& text) {
    return text.repeated(count);
}

// Groups of ten that use the group before, `levels` deep.
QByteArray usedTenfold(int levels) {
    QByteArray body = R"(<defs><rect id="a0" width="9" height="9"/>)";
    for (int i = 1; i <= levels; ++i) {
        body += "<g id=\"a" + QByteArray::number(i) + "\">" +
                times(10, "<use xlink:href=\"#a" + QByteArray::number(i - 1) + "\"/>") + "</g>";
    }
    return svg(body + "</defs><use xlink:href=\"#a" + QByteArray::number(levels) + "\"/>");
}

QByteArray embedded(const QByteArray& type, const QByteArray& bytes) {
    return svg("<image width=\"9\" height=\"9\" xlink:href=\"data:image/" + type + ";base64," +
               bytes.toBase64() + "\"/>");
}

} // namespace

TEST(SvgInspection, AnOrdinaryDrawingIsHarmless) {
    EXPECT_EQ(verdict(redSquare), SvgVerdict::Harmless);
    EXPECT_EQ(verdict("\xEF\xBB\xBF<?xml version=\"1.0\" encoding=\"UTF-8\" standalone=\"no\"?>\n<!-- made "
                      "by hand -->\n"
                      "<!DOCTYPE svg PUBLIC \"-//W3C//DTD SVG 1.1//EN\" \"http://www.w3.org/x.dtd\">\n" +
                      redSquare + "\n<!-- the end -->\n"),
              SvgVerdict::Harmless);
    EXPECT_EQ(
        verdict(svg("<a xlink:href=\"http://example.org/?a=1&amp;b=&#50;\"><text>&lt;&#228;</text></a>"
                    "<linearGradient id=\"g\"><stop/></linearGradient><rect id=\"g1\" fill=\"url(#g)\"/>"
                    "<use href=\"#g1\"/><style>rect{fill:url(#g);stroke-dasharray:none}</style>")),
        SvgVerdict::Harmless);
}

TEST(SvgInspection, OtherTextIsNotADrawing) {
    for (const auto* const text :
         {"", "text", "<html></html>", "<svg>", "<svg></g>", "</svg>", "<svg/><svg/>", "<svg/>text",
          "text<svg/>", "<svg><g></svg></g>", "<svg><!DOCTYPE a></svg>", "<svg a='1' b></svg>"}) {
        EXPECT_EQ(verdict(text), SvgVerdict::NotSvg) << text;
    }
    EXPECT_EQ(verdict(QByteArray("<svg>\0</svg>", 12)), SvgVerdict::NotSvg);
}

TEST(SvgInspection, AnEncodingThatHidesMarkupIsRefused) {
    for (const auto* const name : {"UTF-7", "UTF-16", "IBM037", "ISO-2022-JP", ""}) {
        EXPECT_EQ(verdict(QByteArray("<?xml version='1.0' encoding='") + name + "'?>" + redSquare),
                  SvgVerdict::NotSvg)
            << name;
    }
    for (const auto* const name : {"utf-8", "ISO-8859-1", "windows-1252", "US-ASCII"}) {
        EXPECT_EQ(verdict(QByteArray("<?xml version='1.0' encoding=\"") + name + "\"?>" + redSquare),
                  SvgVerdict::Harmless)
            << name;
    }
}

TEST(SvgInspection, DepthIsBounded) {
    EXPECT_EQ(verdict(svg(times(99, "<g>") + times(99, "</g>"))), SvgVerdict::Harmless);
    EXPECT_EQ(verdict(svg(times(100, "<g>") + times(100, "</g>"))), SvgVerdict::TooDeep);
    EXPECT_EQ(verdict(svg(times(200'000, "<g>"))), SvgVerdict::TooDeep);
}

TEST(SvgInspection, TheNumberOfElementsIsBounded) {
    EXPECT_EQ(verdict(svg(times(4'999, "<g/>"))), SvgVerdict::Harmless);
    EXPECT_EQ(verdict(svg(times(5'000, "<g/>"))), SvgVerdict::TooMuchToDraw);
}

TEST(SvgInspection, WhatIsUsedCountsAsOftenAsItIsDrawn) {
    EXPECT_EQ(verdict(usedTenfold(3)), SvgVerdict::Harmless);
    EXPECT_EQ(verdict(usedTenfold(4)), SvgVerdict::TooMuchToDraw);
    EXPECT_EQ(verdict(usedTenfold(15)), SvgVerdict::TooMuchToDraw);
    const auto markers = R"(<marker id="m">)" + times(100, "<path/>") + "</marker>";
    EXPECT_EQ(verdict(svg(markers + times(40, R"svg(<path marker-end="url(#m)"/>)svg"))),
              SvgVerdict::Harmless);
    EXPECT_EQ(verdict(svg(markers + times(60, R"svg(<path marker-end="url(#m)"/>)svg"))),
              SvgVerdict::TooMuchToDraw);
    EXPECT_EQ(verdict(svg(markers + times(60, R"svg(<path style="marker: url( '#m' )"/>)svg"))),
              SvgVerdict::TooMuchToDraw);
    EXPECT_EQ(verdict(svg(markers + "<style>path{marker:url(#m)}</style>" + times(60, "<path/>"))),
              SvgVerdict::TooMuchToDraw);
}

TEST(SvgInspection, AGradientIsNoMoreToDrawThanAColour) {
    const auto gradient = R"(<linearGradient id="g">)" + times(50, "<stop/>") + "</linearGradient>";
    EXPECT_EQ(verdict(svg(gradient + times(4'000, R"svg(<path fill="url(#g)"/>)svg"))), SvgVerdict::Harmless);
}

TEST(SvgInspection, WhatRefersToItselfIsRefused) {
    EXPECT_EQ(verdict(svg(R"(<g id="a"><use xlink:href="#a"/></g>)")), SvgVerdict::TooDeep);
    EXPECT_EQ(verdict(svg(R"(<g id="a"><use xlink:href="#b"/></g><g id="b"><use href="#a"/></g>)")),
              SvgVerdict::TooDeep);
    EXPECT_EQ(verdict(svg(R"(<use href="#root"/>)", R"(id="root")")), SvgVerdict::TooDeep);
    EXPECT_EQ(verdict(svg(R"(<linearGradient id="a" href="#b"/><linearGradient id="b" href="#a"/>)")),
              SvgVerdict::TooDeep);
    EXPECT_EQ(verdict(svg(R"svg(<pattern id="p"><rect fill="url(#p)"/></pattern>)svg")), SvgVerdict::TooDeep);
}

TEST(SvgInspection, OneNameForAShapeAndItsColourIsNoCircle) {
    EXPECT_EQ(verdict(svg(R"svg(<linearGradient id="band"/><path id="band" fill="url(#band)"/>)svg")),
              SvgVerdict::Harmless);
}

TEST(SvgInspection, AChainOfReferencesIsBounded) {
    QByteArray body = "<g id=\"a0\"/>";
    for (int i = 1; i <= 16; ++i) {
        body += "<use id=\"a" + QByteArray::number(i) + "\" href=\"#a" + QByteArray::number(i - 1) + "\"/>";
    }
    EXPECT_EQ(verdict(svg(body)), SvgVerdict::Harmless);
    QByteArray longest;
    for (int i = 4'000; i > 0; --i) { // the far end first, so that nothing is known when it is asked for
        longest +=
            "<use id=\"a" + QByteArray::number(i) + "\" href=\"#a" + QByteArray::number(i - 1) + "\"/>";
    }
    EXPECT_EQ(verdict(svg(longest)), SvgVerdict::TooDeep);
}

TEST(SvgInspection, DashesMakeEachElementCountForMore) {
    const auto lines = times(600, "<path/>");
    EXPECT_EQ(verdict(svg(lines)), SvgVerdict::Harmless);
    EXPECT_EQ(verdict(svg(lines + "<g stroke-dasharray=\"1\"/>")), SvgVerdict::TooMuchToDraw);
    EXPECT_EQ(verdict(svg(lines + "<g style=\"stroke-dasharray: 1,2\"/>")), SvgVerdict::TooMuchToDraw);
    EXPECT_EQ(verdict(svg(lines + "<style>g{stroke-dasharray:1}</style>")), SvgVerdict::TooMuchToDraw);
    EXPECT_EQ(verdict(svg(lines + "<g stroke-dasharray=\"none\" style=\"stroke-dasharray:none\"/>")),
              SvgVerdict::Harmless);
}

TEST(SvgInspection, CoordinatesAreBounded) {
    for (const auto* const path : {"M0 0 L1000000 5", "M0,0L-1234567.5,3", "M1e6 0", "M1.5E+9 0",
                                   "M1e99999999 0", "M0 0 00000 1000000"}) {
        EXPECT_EQ(verdict(svg(QByteArray("<path d=\"") + path + "\"/>")), SvgVerdict::TooLarge) << path;
    }
    for (const auto* const path : {"M0 0 L999999 5", "M.12345678 0.00000001", "M1e-30 0", "M1e5 0",
                                   "M000000000012 3", "M1 2.99999999.5"}) {
        EXPECT_EQ(verdict(svg(QByteArray("<path d=\"") + path + "\"/>")), SvgVerdict::Harmless) << path;
    }
    for (const auto* const attribute :
         {"r", "x", "cx", "points", "width", "transform", "stroke-width", "viewBox"}) {
        EXPECT_EQ(verdict(svg(QByteArray("<g ") + attribute + "=\"12345678\"/>")), SvgVerdict::TooLarge)
            << attribute;
    }
    EXPECT_EQ(verdict(svg("<g id=\"g12345678\" label=\"12345678\"/>")), SvgVerdict::Harmless);
}

TEST(SvgInspection, TextIsBounded) {
    EXPECT_EQ(verdict(svg("<text>" + QByteArray(1024 * 1024, 'x') + "</text>")), SvgVerdict::TooLarge);
    EXPECT_EQ(verdict(QByteArray(9 * 1024 * 1024, ' ') + redSquare), SvgVerdict::TooLarge);
}

TEST(SvgInspection, OnlyPicturesInTheFileItselfAreShown) {
    for (const auto* const link :
         {"/dev/zero", "file:///etc/passwd", "picture.png", "http://example.org/a.png", "",
          "data:", "data:image/png;base64,", "data:text/plain;base64,AAAA", "data:image/png,AAAA",
          "data:image/png;base64,&#65;AAA", "database/x"}) {
        for (const auto* const element : {"image", "svg:image", "feImage"}) {
            for (const auto* const attribute : {"xlink:href", "href"}) {
                EXPECT_EQ(verdict(svg(QByteArray("<") + element + ' ' + attribute + "='" + link + "'/>")),
                          SvgVerdict::ExternalReference)
                    << link;
            }
        }
    }
    EXPECT_EQ(verdict("<?xml-stylesheet type='text/css' href='/dev/zero'?>" + redSquare),
              SvgVerdict::ExternalReference);
}

TEST(SvgInspection, EmbeddedPicturesAreWhatTheySayAndBounded) {
    EXPECT_EQ(verdict(embedded("png", png(10, 10))), SvgVerdict::Harmless);
    EXPECT_EQ(verdict(embedded("jpeg", encoded(filledImage(10, 10, Qt::red), "jpeg"))), SvgVerdict::Harmless);
    EXPECT_EQ(verdict(embedded("svg+xml", redSquare)), SvgVerdict::ExternalReference);
    EXPECT_EQ(verdict(embedded("png", redSquare)), SvgVerdict::ExternalReference);
    EXPECT_EQ(verdict(embedded("png", pngThatClaims(5'000, 5'000))), SvgVerdict::TooLarge);
    EXPECT_EQ(verdict(embedded("png", pngThatClaims(10, 10))), SvgVerdict::ExternalReference); // no pixels
    const auto large = "<image href=\"data:image/png;base64," + png(3'000, 3'000).toBase64() + "\"/>";
    EXPECT_EQ(verdict(svg(large)), SvgVerdict::Harmless);
    EXPECT_EQ(verdict(svg(large + large)), SvgVerdict::TooLarge);
}

TEST(SvgInspection, PlainEntitiesAreAllowed) {
    EXPECT_EQ(verdict("<!DOCTYPE svg [<!ENTITY ns \"http://www.w3.org/2000/svg\"><!ENTITY st \"fill:red\">]>"
                      "<svg xmlns=\"&ns;\"><rect style=\"&st;\" id=\"&st;x\"/></svg>"),
              SvgVerdict::Harmless);
}

TEST(SvgInspection, EntitiesThatBuildOnEachOtherOrHideMarkupAreRefused) {
    for (const auto* const declaration :
         {"<!ENTITY a '&b;&b;'>", "<!ENTITY a '&#60;g/&#62;'>", "<!ENTITY a '<image href=\"/dev/zero\"/>'>",
          "<!ENTITY % a 'x'>", "<!ENTITY a SYSTEM '/etc/passwd'>", "<!ENTITY a PUBLIC 'x' 'y'>",
          "<!ENTITY a '%b;'>"}) {
        EXPECT_EQ(verdict(QByteArray("<!DOCTYPE svg [") + declaration + "]>" + redSquare),
                  SvgVerdict::SuspectEntities)
            << declaration;
    }
    QByteArray many;
    for (int i = 0; i < 300; ++i) {
        many += "<!ENTITY e" + QByteArray::number(i) + " 'x'>";
    }
    EXPECT_EQ(verdict("<!DOCTYPE svg [" + many + "]>" + redSquare), SvgVerdict::SuspectEntities);
    EXPECT_EQ(verdict("<!DOCTYPE svg [<!ENTITY a '" + QByteArray(300, 'x') + "'>]>" + redSquare),
              SvgVerdict::SuspectEntities);
    EXPECT_EQ(verdict("<!DOCTYPE svg [<!ENTITY a 'x'>]>" + svg("<text>" + times(10'001, "&a;") + "</text>")),
              SvgVerdict::SuspectEntities);
}

TEST(SvgInspection, AReferenceBehindAnEntityOrANumberIsSeenThrough) {
    const QByteArray type = "<!DOCTYPE svg [<!ENTITY a 'b'><!ENTITY big '9999999'>]>";
    EXPECT_EQ(verdict(type + svg(R"(<g id="b"><use href="#&a;"/></g>)")), SvgVerdict::TooDeep);
    EXPECT_EQ(verdict(type + svg(R"(<g id="&a;"><use href="#b"/></g>)")), SvgVerdict::TooDeep);
    EXPECT_EQ(verdict(type + svg(R"(<path d="M&big; 0"/>)")), SvgVerdict::TooLarge);
    EXPECT_EQ(verdict(svg(R"(<g id="b"><use href="#&#98;"/></g>)")), SvgVerdict::SuspectEntities);
    EXPECT_EQ(verdict(svg(R"(<path d="M&#57;999999 0"/>)")), SvgVerdict::SuspectEntities);
    EXPECT_EQ(verdict(svg(R"(<g style="&undeclared;"/>)")), SvgVerdict::SuspectEntities);
    EXPECT_EQ(verdict(svg(R"(<g style="font-family:&quot;Sans&quot;"/>)")), SvgVerdict::Harmless);
}
