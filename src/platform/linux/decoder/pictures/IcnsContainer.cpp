#include "platform/linux/decoder/pictures/IcnsContainer.h"

#include "platform/linux/decoder/pictures/RasterPicture.h"

#include <QtEndian>
#include <algorithm>
#include <array>
#include <optional>

namespace amberquill::desktop {

namespace {

constexpr int maximumChunks = 256;
constexpr qsizetype headerBytes = 8; // a type of four letters, a length that includes the header

struct PackedType {
    QByteArrayView type;
    QByteArrayView alphaType;
    int edge = 0;
    int skipped = 0; // bytes before the planes
};

constexpr std::array packedTypes{
    PackedType{.type = "is32", .alphaType = "s8mk", .edge = 16, .skipped = 0},
    PackedType{.type = "il32", .alphaType = "l8mk", .edge = 32, .skipped = 0},
    PackedType{.type = "ih32", .alphaType = "h8mk", .edge = 48, .skipped = 0},
    PackedType{.type = "it32", .alphaType = "t8mk", .edge = 128, .skipped = 4},
};

struct ArgbType {
    QByteArrayView type;
    int edge = 0;
};

constexpr std::array argbTypes{
    ArgbType{.type = "ic04", .edge = 16},
    ArgbType{.type = "ic05", .edge = 32},
    ArgbType{.type = "icsb", .edge = 18},
};
constexpr QByteArrayView argbMark = "ARGB";

struct Chunk {
    QByteArrayView type;
    QByteArrayView data;
};

std::vector<Chunk> chunksOf(QByteArrayView file) {
    std::vector<Chunk> chunks;
    if (!file.startsWith("icns") || file.size() < headerBytes) {
        return chunks;
    }
    auto rest = file.sliced(headerBytes);
    while (rest.size() >= headerBytes && chunks.size() < maximumChunks) {
        const auto length = qsizetype{qFromBigEndian<quint32>(rest.data() + 4)};
        if (length < headerBytes || length > rest.size()) {
            break;
        }
        chunks.push_back({.type = rest.first(4), .data = rest.sliced(headerBytes, length - headerBytes)});
        rest = rest.sliced(length);
    }
    return chunks;
}

std::optional<IcnsPicture> pictureIn(const Chunk& chunk, const std::vector<Chunk>& all) {
    for (const auto& known : packedTypes) {
        if (chunk.type == known.type && chunk.data.size() > known.skipped) {
            const auto mask = std::find_if(all.begin(), all.end(),
                                           [&](const Chunk& one) { return one.type == known.alphaType; });
            return IcnsPicture{.kind = IcnsPicture::Kind::Packed,
                               .edge = known.edge,
                               .data = chunk.data.sliced(known.skipped),
                               .alpha = mask == all.end() ? QByteArrayView() : mask->data};
        }
    }
    for (const auto& known : argbTypes) {
        if (chunk.type == known.type && chunk.data.startsWith(argbMark)) {
            return IcnsPicture{.kind = IcnsPicture::Kind::PackedWithAlpha,
                               .edge = known.edge,
                               .data = chunk.data.sliced(argbMark.size()),
                               .alpha = {}};
        }
    }
    // The PNG's own header, because the chunk type may state a wrong size.
    const auto size =
        rasterSize(QByteArray::fromRawData(chunk.data.constData(), chunk.data.size()), IconFormat::Png);
    if (size.isEmpty()) {
        return std::nullopt;
    }
    return IcnsPicture{.kind = IcnsPicture::Kind::Png,
                       .edge = std::max(size.width(), size.height()),
                       .data = chunk.data,
                       .alpha = {}};
}

// Unpacks one plane off the front of `packed`. A control byte is followed by 1 to 128 literal bytes, or by
// one byte to repeat 3 to 130 times. False: the data is too short.
bool takePlane(QByteArrayView& packed, std::vector<uchar>& plane) {
    std::size_t at = 0;
    while (at < plane.size()) {
        if (packed.size() < 2) {
            return false;
        }
        const auto control = static_cast<uchar>(packed.front());
        const bool isRepeated = control >= 128;
        const auto length = std::size_t{control} - (isRepeated ? 125U : 0U) + (isRepeated ? 0U : 1U);
        const auto used = isRepeated ? std::size_t{1} : length;
        if (length > plane.size() - at || used > static_cast<std::size_t>(packed.size()) - 1) {
            return false;
        }
        packed = packed.sliced(1);
        const auto to = plane.begin() + static_cast<std::ptrdiff_t>(at);
        if (isRepeated) {
            std::fill_n(to, length, static_cast<uchar>(packed.front()));
        } else {
            std::copy_n(packed.begin(), length, to);
        }
        at += length;
        packed = packed.sliced(static_cast<qsizetype>(used));
    }
    return true;
}

} // namespace

std::vector<IcnsPicture> icnsPictures(QByteArrayView file) {
    const auto chunks = chunksOf(file);
    std::vector<IcnsPicture> pictures;
    for (const auto& chunk : chunks) {
        if (auto picture = pictureIn(chunk, chunks)) {
            pictures.push_back(*picture);
        }
    }
    return pictures;
}

QImage unpackedIcnsPicture(const IcnsPicture& picture) {
    const auto pixels = static_cast<std::size_t>(picture.edge) * static_cast<std::size_t>(picture.edge);
    std::array<std::vector<uchar>, 4> planes; // alpha, red, green, blue
    planes.fill(std::vector<uchar>(pixels, 255));
    auto packed = picture.data;
    const std::size_t first = picture.kind == IcnsPicture::Kind::PackedWithAlpha ? 0 : 1;
    for (auto i = first; i < planes.size(); ++i) {
        if (!takePlane(packed, planes[i])) {
            return {};
        }
    }
    if (first == 1 && picture.alpha.size() >= static_cast<qsizetype>(pixels)) {
        std::copy_n(picture.alpha.begin(), pixels, planes[0].begin());
    }
    QImage image(picture.edge, picture.edge, QImage::Format_ARGB32);
    if (image.isNull()) {
        return {};
    }
    std::size_t at = 0;
    for (int y = 0; y < picture.edge; ++y) {
        auto* const line = reinterpret_cast<QRgb*>(image.scanLine(y));
        for (int x = 0; x < picture.edge; ++x, ++at) {
            line[x] = qRgba(planes[1][at], planes[2][at], planes[3][at], planes[0][at]);
        }
    }
    return image;
}

} // namespace amberquill::desktop
