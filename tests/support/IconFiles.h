#pragma once

#include "support/TemporaryTree.h"

#include <QBuffer>
#include <QByteArray>
#include <QColor>
#include <QImage>
#include <QtEndian>
#include <fcntl.h>
#include <map>
#include <stdexcept>
#include <string>
#include <sys/stat.h>
#include <utility>
#include <vector>
#include <zlib.h>

// Icon files for tests, good and hostile ones.
namespace amberquill {

inline constexpr QRgb red = 0xFFFF0000U;
inline constexpr QRgb green = 0xFF00FF00U;
inline constexpr QRgb blue = 0xFF0000FFU;

inline QImage filledImage(int width, int height, const QColor& colour) {
    QImage image(width, height, QImage::Format_ARGB32);
    image.fill(colour);
    return image;
}

inline QByteArray encoded(const QImage& image, const char* format) {
    QByteArray bytes;
    QBuffer buffer(&bytes);
    buffer.open(QIODevice::WriteOnly);
    if (!image.save(&buffer, format)) {
        throw std::runtime_error(std::string("cannot write ") + format);
    }
    return bytes;
}

inline QByteArray png(int width, int height, const QColor& colour = Qt::red) {
    return encoded(filledImage(width, height, colour), "png");
}

inline QByteArray bigEndian(quint32 number) {
    QByteArray bytes(4, '\0');
    qToBigEndian(number, bytes.data());
    return bytes;
}

inline QByteArray pngChunk(const QByteArray& type, const QByteArray& data) {
    const QByteArray body = type + data;
    const auto sum =
        ::crc32(0, reinterpret_cast<const Bytef*>(body.constData()), static_cast<uInt>(body.size()));
    return bigEndian(static_cast<quint32>(data.size())) + body + bigEndian(static_cast<quint32>(sum));
}

// A PNG file whose header claims this size.
inline QByteArray pngThatClaims(quint32 width, quint32 height, const QByteArray& rest = {}) {
    return QByteArray("\x89PNG\r\n\x1a\n", 8) +
           pngChunk("IHDR", bigEndian(width) + bigEndian(height) + QByteArray("\x08\x06\0\0\0", 5)) + rest;
}

inline QByteArray svg(const QByteArray& body, const QByteArray& attributes = R"(viewBox="0 0 100 100")") {
    return R"(<svg xmlns="http://www.w3.org/2000/svg" xmlns:xlink="http://www.w3.org/1999/xlink" )" +
           attributes + ">" + body + "</svg>";
}

inline QByteArray squareOf(const QByteArray& colour) {
    return R"(<rect width="100" height="100" fill=")" + colour + R"("/>)";
}

inline const QByteArray redSquare = svg(squareOf("#ff0000"));

inline QByteArray gzipped(const QByteArray& bytes) {
    z_stream stream = {};
    constexpr int gzip = 16 + MAX_WBITS;
    if (::deflateInit2(&stream, Z_BEST_COMPRESSION, Z_DEFLATED, gzip, 8, Z_DEFAULT_STRATEGY) != Z_OK) {
        throw std::runtime_error("cannot compress");
    }
    QByteArray result(static_cast<qsizetype>(::deflateBound(&stream, static_cast<uLong>(bytes.size()))),
                      '\0');
    QByteArray source = bytes;
    stream.next_in = reinterpret_cast<Bytef*>(source.data());
    stream.avail_in = static_cast<uInt>(source.size());
    stream.next_out = reinterpret_cast<Bytef*>(result.data());
    stream.avail_out = static_cast<uInt>(result.size());
    ::deflate(&stream, Z_FINISH);
    result.truncate(static_cast<qsizetype>(stream.total_out));
    ::deflateEnd(&stream);
    return result;
}

inline QByteArray icnsChunk(const QByteArray& type, const QByteArray& data) {
    return type + bigEndian(static_cast<quint32>(data.size() + 8)) + data;
}

inline QByteArray icns(const std::vector<QByteArray>& chunks) {
    QByteArray body;
    for (const auto& chunk : chunks) {
        body += chunk;
    }
    return icnsChunk("icns", body);
}

// Literal bytes in the packing of ICNS planes.
inline QByteArray icnsPacked(const QByteArray& plane) {
    QByteArray packed;
    for (qsizetype at = 0; at < plane.size(); at += 128) {
        const auto run = plane.mid(at, 128);
        packed += static_cast<char>(run.size() - 1) + run;
    }
    return packed;
}

// A repeated byte in the packing of ICNS planes.
inline QByteArray icnsRepeated(char byte, int count) {
    QByteArray packed;
    while (count > 0) {
        const int run = std::min(count, 130);
        if (run < 3) {
            return packed + icnsPacked(QByteArray(count, byte));
        }
        packed += static_cast<char>(run + 125);
        packed += byte;
        count -= run;
    }
    return packed;
}

// Sets the modification time of a file or folder, in seconds since 1970.
inline void setModified(const QString& path, std::int64_t seconds) {
    const timespec times[2] = {{.tv_sec = seconds, .tv_nsec = 0}, {.tv_sec = seconds, .tv_nsec = 0}};
    if (::utimensat(AT_FDCWD, path.toUtf8().constData(), static_cast<const timespec*>(times), 0) != 0) {
        throw std::runtime_error("cannot set a time");
    }
}

// An icon-theme.cache: for each name its directories, by number, with the extensions there (1: xpm, 2: svg,
// 4: png).
using CachedIcons = std::map<std::string, std::vector<std::pair<quint16, quint16>>>;

inline constexpr quint16 pngFlag = 4;

inline QByteArray themeCache(const std::vector<std::string>& directories, const CachedIcons& icons,
                             quint32 buckets = 7) {
    QByteArray bytes = bigEndian(0x00010000U) + bigEndian(0) + bigEndian(0);
    const auto here = [&bytes] { return static_cast<quint32>(bytes.size()); };
    const auto put = [&bytes](quint32 offset, quint32 value) { bytes.replace(offset, 4, bigEndian(value)); };
    const auto putText = [&](const std::string& text) {
        const auto at = here();
        bytes += QByteArray::fromStdString(text) + '\0';
        return at;
    };
    put(8, here());
    const auto list = here();
    bytes += bigEndian(static_cast<quint32>(directories.size())) +
             QByteArray(static_cast<qsizetype>(directories.size() * 4), '\0');
    for (std::size_t i = 0; i < directories.size(); ++i) {
        const auto at = putText(directories[i]);
        put(list + 4 + static_cast<quint32>(i) * 4, at);
    }
    put(4, here());
    const auto table = here();
    bytes += bigEndian(buckets);
    for (quint32 i = 0; i < buckets; ++i) {
        bytes += bigEndian(0xFFFFFFFFU);
    }
    for (const auto& [name, images] : icons) {
        quint32 hash = 0;
        for (const char character : name) {
            hash = hash * 31 + static_cast<quint32>(static_cast<signed char>(character));
        }
        const auto nameAt = putText(name);
        const auto imagesAt = here();
        bytes += bigEndian(static_cast<quint32>(images.size()));
        for (const auto& [directory, endings] : images) {
            bytes += bigEndian((quint32{directory} << 16U) | endings) + bigEndian(0);
        }
        const auto bucket = table + 4 + 4 * (hash % buckets);
        const auto before = qFromBigEndian<quint32>(bytes.constData() + bucket);
        put(bucket, here());
        bytes += bigEndian(before) + bigEndian(nameAt) + bigEndian(imagesAt);
    }
    return bytes;
}

// An index.theme with these groups, each "path" → its keys.
inline QByteArray themeIndex(const std::vector<std::pair<QByteArray, QByteArray>>& directories,
                             const QByteArray& inherits = {}) {
    QByteArray names;
    QByteArray groups;
    for (const auto& [path, keys] : directories) {
        names += path + ',';
        groups += "\n[" + path + "]\n" + keys + '\n';
    }
    return "[Icon Theme]\nName=Test\nInherits=" + inherits + "\nDirectories=" + names + '\n' + groups;
}

// The keys of a directory of one fixed size.
inline QByteArray fixedSize(int size) {
    return "Size=" + QByteArray::number(size) + "\nContext=Applications\nType=Fixed";
}

// A file that is bad as an icon.
struct BadIcon {
    // The result of decoding it. Either: with or without a picture, depending on the versions of the
    // libraries. Overload: it takes seconds, or gigabytes of memory, or crashes the decoder; within the
    // decoder's limits there is no picture. All others are decoded at once.
    enum class Outcome { Picture, NoPicture, Either, Overload };

    std::string name; // of the file
    QByteArray bytes;
    Outcome outcome = Outcome::NoPicture;
};

using BadIcons = std::vector<BadIcon>;

} // namespace amberquill
