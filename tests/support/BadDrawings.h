#pragma once

#include "support/IconFiles.h"

#include <QList>
#include <random>

// SVG documents for tests: broken ones, and ones that refer to other files or are very expensive to draw.
namespace amberquill {

inline QByteArray entityBomb(const QByteArray& innermost) {
    QByteArray type = "<!DOCTYPE svg [<!ENTITY e0 \"" + innermost + "\">";
    for (int i = 1; i < 12; ++i) {
        type += "<!ENTITY e" + QByteArray::number(i) + " \"" +
                ("&e" + QByteArray::number(i - 1) + ";").repeated(10) + "\">";
    }
    return type + "]>" + svg("<g>&e11;</g>" + squareOf("red"));
}

// One large entity, used so often that the text takes gigabytes.
inline QByteArray repeatedEntity() {
    return "<!DOCTYPE svg [<!ENTITY e \"" + QByteArray(100'000, 'x') + "\">]>" +
           svg("<desc>" + QByteArray("&e;").repeated(50'000) + "</desc>" + squareOf("red"));
}

inline QByteArray nested(int levels) {
    return svg(QByteArray("<g>").repeated(levels) + squareOf("red") + QByteArray("</g>").repeated(levels));
}

// Each group uses the previous group ten times: ten to the power of `depth` shapes in all.
inline QByteArray useTree(int depth) {
    QByteArray groups = R"(<rect id="u0" width="9" height="9"/>)";
    for (int i = 1; i <= depth; ++i) {
        groups += "<g id=\"u" + QByteArray::number(i) + "\">" +
                  ("<use xlink:href=\"#u" + QByteArray::number(i - 1) + "\"/>").repeated(10) + "</g>";
    }
    return svg("<defs>" + groups + "</defs><use xlink:href=\"#u" + QByteArray::number(depth) + "\"/>");
}

// Overlapping shapes of `curves` curves each, filled and stroked with a gradient.
inline QByteArray overlappingCurves(int shapes, int curves) {
    std::mt19937 numbers(1); // NOLINT: the same numbers each time
    const auto number = [&numbers] { return ' ' + QByteArray::number(static_cast<int>(numbers() % 100)); };
    QByteArray body = R"(<linearGradient id="g"><stop offset="0" stop-color="#fa5" stop-opacity=".5"/>)"
                      R"(<stop offset="1" stop-color="#46f" stop-opacity=".5"/></linearGradient>)";
    for (int shape = 0; shape < shapes; ++shape) {
        body += R"(<path fill='url(#g)' stroke='url(#g)' d="M)" + number() + number();
        for (int curve = 0; curve < curves; ++curve) {
            body += 'C' + number() + number() + number() + number() + number() + number();
        }
        body += "\"/>";
    }
    return svg(body);
}

inline QByteArray filtered(const QByteArray& filter) {
    return svg(R"(<filter id="f" x="-1" y="-1" width="3" height="3">)" + filter +
               R"(</filter><rect width="100" height="100" fill="red" filter='url(#f)'/>)");
}

inline QByteArray styledByMany(int rules) {
    QByteArray style;
    for (int i = 0; i < rules; ++i) {
        style += "g g g g g g g g .c" + QByteArray::number(i) + "{fill:red}";
    }
    return svg("<style>" + style + "</style>" + QByteArray("<g>").repeated(20) +
               QByteArray(R"(<rect width="1" height="1" class="c"/>)").repeated(rules) +
               QByteArray("</g>").repeated(20));
}

// Drawings of a red square with a reference to another file. `place` is the start of the reference:
// "file:///folder/" or "http://127.0.0.1:80/".
inline BadIcons drawingsThatReferTo(const QByteArray& place, const std::string& name) {
    using enum BadIcon::Outcome;
    const QByteArray square = squareOf("red");
    return {
        {name + "-image.svg",
         svg(square + R"(<image width="100" height="100" xlink:href=")" + place + R"(picture.png"/>)"),
         Picture},
        {name + "-filter.svg",
         svg(square + R"(<filter id="f"><feImage xlink:href=")" + place +
             R"(picture.png"/></filter><rect width="100" height="100" filter='url(#f)'/>)"),
         Picture},
        {name + "-use.svg", svg(square + R"(<use xlink:href=")" + place + R"(drawing.svg#a"/>)"), Picture},
        {name + "-style-sheet.svg",
         "<?xml-stylesheet type=\"text/css\" href=\"" + place + "style.css\"?>" + svg(square), Picture},
        {name + "-import.svg", svg("<style>@import url(\"" + place + "style.css\");</style>" + square),
         Picture},
        {name + "-include.svg",
         svg(square + R"(<xi:include xmlns:xi="http://www.w3.org/2001/XInclude" parse="text" href=")" +
             place + R"(text"/>)"),
         Picture},
        {name + "-entity.svg",
         "<!DOCTYPE svg [<!ENTITY e SYSTEM \"" + place + "text\">]>" + svg("<desc>&e;</desc>" + square),
         Either},
        {name + "-type.svg", "<!DOCTYPE svg SYSTEM \"" + place + "svg.dtd\">" + svg(square), Picture},
    };
}

// A compressed drawing whose text is larger than a common machine's memory.
inline QByteArray compressedBomb() {
    constexpr int part = 16 * 1024 * 1024;
    constexpr int parts = 256;
    const QByteArray spaces(part, ' ');
    z_stream stream = {};
    constexpr int gzip = 16 + MAX_WBITS;
    if (::deflateInit2(&stream, Z_BEST_COMPRESSION, Z_DEFLATED, gzip, 8, Z_DEFAULT_STRATEGY) != Z_OK) {
        throw std::runtime_error("cannot compress");
    }
    // A full flush resets the compressor: the same text gives the same bytes again.
    const auto compressed = [&stream](QByteArray text) {
        QByteArray result(
            static_cast<qsizetype>(::deflateBound(&stream, static_cast<uLong>(text.size()))) + 64, '\0');
        stream.next_in = reinterpret_cast<Bytef*>(text.data());
        stream.avail_in = static_cast<uInt>(text.size());
        stream.next_out = reinterpret_cast<Bytef*>(result.data());
        stream.avail_out = static_cast<uInt>(result.size());
        ::deflate(&stream, Z_FULL_FLUSH);
        result.truncate(result.size() - static_cast<qsizetype>(stream.avail_out));
        return result;
    };
    QByteArray bytes = compressed(R"(<svg xmlns="http://www.w3.org/2000/svg" viewBox="0 0 9 9">)");
    bytes += compressed(spaces).repeated(parts);
    bytes += compressed(R"(<rect width="9" height="9"/></svg>)");
    ::deflateEnd(&stream);
    return bytes;
}

inline BadIcons badDrawings() {
    using enum BadIcon::Outcome;
    BadIcons all{
        {"entities-of-text.svg", entityBomb("lol"), NoPicture},
        {"entities-of-shapes.svg", entityBomb("<path d='M0 0h9v9z'/>"), NoPicture},
        {"entity-loop.svg",
         "<!DOCTYPE svg [<!ENTITY a \"&b;\"><!ENTITY b \"&a;\">]>" +
             svg("<desc>&a;</desc>" + squareOf("red")),
         NoPicture},
        {"entity-repeated.svg", repeatedEntity(), Overload},
        {"nested.svg", nested(100'000), NoPicture},
        {"nested-unclosed.svg", svg("").chopped(6) + QByteArray("<g>").repeated(100'000), NoPicture},
        {"use-loop.svg",
         svg(R"(<g id="a"><use xlink:href="#b"/></g><g id="b"><use xlink:href="#a"/></g>)" + squareOf("red")),
         Either},
        {"use-itself.svg", svg(R"(<g id="a"><use xlink:href="#a"/></g>)" + squareOf("red")), Either},
        {"use-tree.svg", useTree(20), Overload},
        {"huge-coordinates.svg",
         svg(R"(<rect x="-1e30" y="-1e30" width="2e30" height="2e30" stroke="red" stroke-width="1e20"/>)"
             R"(<circle r="1e38"/><path d="M-1e300 0L1e300 1e300C1e308 1e308 -1e308 9 9 9"/>)"),
         Either},
        {"huge-dashes.svg", svg(R"(<path d="M0 0L1e9 1e9" stroke="red" stroke-dasharray="0.001"/>)"), Either},
        {"huge-size.svg", svg(squareOf("red"), R"(width="1e9" height="1e9")"), NoPicture},
        {"huge-box.svg", svg(squareOf("red"), R"(viewBox="0 0 1e30 1e-30")"), Either},
        {"no-number-size.svg", svg(squareOf("red"), R"(width="NaN" height="inf")"), Either},
        {"empty-size.svg", svg(squareOf("red"), R"(width="0" height="0")"), NoPicture},
        {"negative-size.svg", svg(squareOf("red"), R"(width="-5" height="10")"), Either},
        {"curves.svg", overlappingCurves(50, 5'000), Overload},
        {"blur.svg", filtered(R"(<feGaussianBlur stdDeviation="10000"/>)"), Either},
        {"morphology.svg", filtered(R"(<feMorphology operator="dilate" radius="1000"/>)"), Either},
        {"morphologies.svg",
         filtered(QByteArray(R"(<feMorphology operator="dilate" radius="1000"/>)").repeated(20'000)),
         Overload},
        {"turbulence.svg", filtered(R"(<feTurbulence baseFrequency="0.9" numOctaves="1000000"/>)"), Overload},
        {"convolution.svg",
         filtered(R"(<feConvolveMatrix order="500" kernelMatrix=")" + QByteArray("1 ").repeated(250'000) +
                  "\"/>"),
         Overload},
        {"tile.svg", filtered(R"(<feFlood width="0" height="9"/><feTile/>)"), Overload},
        {"huge-filter.svg",
         svg(R"(<filter id="f" filterUnits="userSpaceOnUse" x="-1e6" y="-1e6" width="1e9" height="1e9">)"
             R"(<feGaussianBlur stdDeviation="30"/></filter>)"
             R"(<rect width="100" height="100" fill="red" filter='url(#f)'/>)"),
         Either},
        {"style.svg", styledByMany(60'000), Overload},
        {"bomb.svgz", compressedBomb(), NoPicture},
        {"compressed-twice.svgz", gzipped(gzipped(redSquare)), NoPicture},
        {"truncated.svg", svg(squareOf("red").repeated(100)).chopped(2'000), NoPicture},
        {"truncated.svgz", gzipped(svg(squareOf("red").repeated(100))).chopped(20), NoPicture},
        {"blank.svg", svg(""), NoPicture},
        {"not-a-drawing.svg", "<html><body>404</body></html>", NoPicture},
    };
    for (const auto& [place, name] :
         {std::pair<QByteArray, std::string>("file:///tmp/", "file"), {"http://127.0.0.1:9/", "http"}}) {
        const auto references = drawingsThatReferTo(place, name);
        all.insert(all.end(), references.begin(), references.end());
    }
    return all;
}

} // namespace amberquill
