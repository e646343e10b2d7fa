#pragma once

#include "support/IconFiles.h"

#include <QtEndian>
#include <array>
#include <random>

// Raster images for tests: broken, too large or animated.
namespace amberquill {

inline QByteArray deflated(const std::vector<QByteArray>& parts) {
    z_stream stream = {};
    if (::deflateInit(&stream, Z_BEST_SPEED) != Z_OK) {
        throw std::runtime_error("cannot compress");
    }
    QByteArray result;
    std::array<char, 65'536> buffer{};
    for (std::size_t i = 0; i < parts.size(); ++i) {
        QByteArray part = parts[i];
        stream.next_in = reinterpret_cast<Bytef*>(part.data());
        stream.avail_in = static_cast<uInt>(part.size());
        do {
            stream.next_out = reinterpret_cast<Bytef*>(buffer.data());
            stream.avail_out = static_cast<uInt>(buffer.size());
            ::deflate(&stream, i + 1 < parts.size() ? Z_NO_FLUSH : Z_FINISH);
            result.append(buffer.data(), static_cast<qsizetype>(buffer.size() - stream.avail_out));
        } while (stream.avail_out == 0);
    }
    ::deflateEnd(&stream);
    return result;
}

// A complete image of `edge` × `edge` pixels, one bit each.
inline QByteArray vastPng(int edge) {
    const QByteArray line(1 + (edge + 7) / 8, '\0');
    const auto size = static_cast<quint32>(edge);
    return QByteArray("\x89PNG\r\n\x1a\n", 8) +
           pngChunk("IHDR", bigEndian(size) + bigEndian(size) + QByteArray("\x01\0\0\0\0", 5)) +
           pngChunk("IDAT", deflated(std::vector<QByteArray>(static_cast<std::size_t>(edge), line))) +
           pngChunk("IEND", {});
}

// A PNG file with one more chunk right after its header.
inline QByteArray pngWith(const QByteArray& type, const QByteArray& data) {
    constexpr qsizetype headerBytes = 8 + 25;
    return png(16, 16).insert(headerBytes, pngChunk(type, data));
}

inline QByteArray colourProfile(const QByteArray& compressed) {
    return QByteArray("profile\0\0", 9) + compressed;
}

inline QByteArray jpegWithProfile(const QByteArray& profile) {
    const QByteArray data = QByteArray("ICC_PROFILE\0\1\1", 14) + profile;
    return encoded(filledImage(16, 16, Qt::red), "jpeg")
        .insert(2, "\xFF\xE2" + bigEndian(static_cast<quint32>(data.size() + 2)).right(2) + data);
}

inline QByteArray littleEndian(quint32 number, int bytes) {
    QByteArray all(4, '\0');
    qToLittleEndian(number, all.data());
    return all.first(bytes);
}

inline QByteArray riffChunk(const QByteArray& type, const QByteArray& data) {
    return type + littleEndian(static_cast<quint32>(data.size()), 4) + data +
           QByteArray(data.size() % 2, '\0');
}

// Two frames of 16 × 16 pixels: red, then blue.
inline QByteArray animatedWebp() {
    QByteArray chunks = riffChunk("VP8X", littleEndian(2, 4) + littleEndian(15, 3) + littleEndian(15, 3)) +
                        riffChunk("ANIM", QByteArray(6, '\0'));
    for (const auto& colour : {Qt::red, Qt::blue}) {
        const auto still = encoded(filledImage(16, 16, colour), "webp");
        constexpr qsizetype fileHeader = 12;
        chunks += riffChunk("ANMF", QByteArray(6, '\0') + littleEndian(15, 3) + littleEndian(15, 3) +
                                        littleEndian(100, 3) + '\0' + still.sliced(fileHeader));
    }
    return riffChunk("RIFF", "WEBP" + chunks);
}

// Two frames of one pixel.
inline QByteArray animatedGif() {
    const QByteArray frame("\x21\xF9\4\0\x0A\0\0\0,\0\0\0\0\1\0\1\0\0\2\2\x44\1\0", 23);
    return QByteArray("GIF89a\1\0\1\0\x80\0\0\xFF\0\0\0\0\xFF", 19) + frame + frame + ';';
}

inline QByteArray xpm(const QByteArray& size) {
    return "/* XPM */\nstatic char *icon[] = {\n\"" + size +
           "\",\n\"a c #FF0000\",\n\"b c None\",\n\"aa\",\n\"ab\"};\n";
}

// A TIFF header that claims `edge` × `edge` pixels of one bit. The file has no pixels.
inline QByteArray tiffThatClaims(quint32 edge) {
    QByteArray bytes("II*\0\x08\0\0\0\x08\0", 10);
    const auto entry = [&bytes](quint32 tag, quint32 value) {
        bytes += littleEndian(tag, 2) + littleEndian(4, 2) + littleEndian(1, 4) + littleEndian(value, 4);
    };
    entry(256, edge); // width
    entry(257, edge); // height
    entry(258, 1);    // bits
    entry(259, 1);    // not compressed
    entry(262, 1);    // zero is black
    entry(273, 8);    // the offset of the lines
    entry(278, edge); // lines
    entry(279, 1000); // bytes
    return bytes + QByteArray(4, '\0');
}

// An ICO file with one image, which its directory claims to have 256 × 256 pixels.
inline QByteArray icoOf(const QByteArray& picture) {
    return QByteArray("\0\0\1\0\1\0\0\0\0\0\1\0\x20\0", 14) +
           littleEndian(static_cast<quint32>(picture.size()), 4) + littleEndian(22, 4) + picture;
}

// A small JPEG file whose header claims this size.
inline QByteArray jpegThatClaims(quint32 edge) {
    auto bytes = encoded(filledImage(16, 16, Qt::red), "jpeg");
    const auto frame = bytes.indexOf("\xFF\xC0");
    const auto size = bigEndian(edge).right(2);
    return bytes.replace(frame + 5, 4, size + size);
}

inline BadIcons badPictures() {
    using enum BadIcon::Outcome;
    const auto truncated = [](const QByteArray& bytes) { return bytes.first(bytes.size() * 2 / 3); };
    // Of random colours: decoders guess the rest of a truncated image of one colour.
    QImage picture(64, 64, QImage::Format_ARGB32);
    std::mt19937 numbers(1); // NOLINT: the same numbers each time
    for (int y = 0; y < picture.height(); ++y) {
        for (int x = 0; x < picture.width(); ++x) {
            picture.setPixel(x, y, 0xFF000000U | static_cast<QRgb>(numbers()));
        }
    }
    constexpr quint32 vast = 30'000;
    const auto vastHeader = pngThatClaims(vast, vast);
    BadIcons all{
        {"empty.png", "", NoPicture},
        {"text.png", "This is not a picture.\n", NoPicture},
        {"zeros.png", QByteArray(100'000, '\0'), NoPicture},
        {"signature.png", QByteArray("\x89PNG\r\n\x1a\n", 8), NoPicture},
        {"vast.png", vastPng(static_cast<int>(vast)), NoPicture},
        {"vast-header.png", vastHeader, NoPicture},
        {"vast-header.jpeg", jpegThatClaims(vast), NoPicture},
        {"vast-header.tiff", tiffThatClaims(vast), NoPicture},
        {"vast-header.xpm", xpm("30000 30000 2 1"), NoPicture},
        {"vast-header.ico", icoOf(vastHeader), NoPicture},
        {"vast-header.icns", icns({icnsChunk("ic10", vastHeader)}), NoPicture},
        {"vast.svg",
         svg(R"(<image width="100" height="100" xlink:href="data:image/png;base64,)" +
             vastPng(static_cast<int>(vast)).toBase64() + "\"/>"),
         Overload},
        {"many-colours.xpm", xpm("2 2 2000000000 1"), NoPicture},
        {"broken-profile.png", pngWith("iCCP", colourProfile(deflated({"this is no profile"}))), Picture},
        {"broken-compressed-profile.png", pngWith("iCCP", colourProfile("these are no compressed bytes")),
         Picture},
        {"vast-profile.png",
         pngWith("iCCP", colourProfile(deflated(std::vector<QByteArray>(1'000, QByteArray(1'000'000, 'x'))))),
         Picture},
        {"broken-gamma.png", pngWith("gAMA", bigEndian(0)), Picture},
        {"broken-primaries.png", pngWith("cHRM", QByteArray(32, '\0')), Picture},
        {"broken-profile.jpeg", jpegWithProfile("this is no profile"), Picture},
        {"animated.gif", animatedGif(), NoPicture},
        {"animated.webp", animatedWebp(), Picture},
    };
    for (const char* const format : {"png", "jpeg", "webp", "tiff", "xpm", "ico", "icns"}) {
        all.push_back({std::string("truncated.") + format, truncated(encoded(picture, format)), Either});
    }
    return all;
}

} // namespace amberquill
