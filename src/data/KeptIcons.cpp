#include "data/KeptIcons.h"

#include <QByteArrayView>
#include <cstring>
#include <memory>
#include <optional>

namespace amberquill {

namespace {

// The heading, then for each icon its edge, its kind, the length of its path, the path and the pixels, all at
// multiples of a pixel's size so that the images can lie in the file's own bytes. Numbers and pixels are in
// the machine's own order: the file does not travel.
constexpr QByteArrayView iconsHeading = "amberquill icons 002";
constexpr qsizetype wordSize = sizeof(quint32);
static_assert(iconsHeading.size() % wordSize == 0);

constexpr quint32 largestEdge = 1024;
constexpr quint32 longestPath = 64 * 1024;

constexpr quint32 ownKind = 1;
constexpr quint32 standInKind = 2;

void appendNumber(QByteArray& content, qsizetype number) {
    const auto value = static_cast<quint32>(number);
    content.append(reinterpret_cast<const char*>(&value), wordSize);
}

qsizetype padding(qsizetype size) {
    return (wordSize - size % wordSize) % wordSize;
}

class Reader {
public:
    explicit Reader(QByteArrayView rest)
        : rest_(rest) {}

    [[nodiscard]] bool atEnd() const { return rest_.isEmpty(); }

    std::optional<QByteArrayView> bytes(qsizetype count) {
        if (count > rest_.size()) {
            return std::nullopt;
        }
        const QByteArrayView taken = rest_.first(count);
        rest_ = rest_.sliced(count);
        return taken;
    }

    // A number from 1 to `largest`.
    std::optional<qsizetype> number(quint32 largest) {
        const auto field = bytes(wordSize);
        quint32 value = 0;
        if (field) {
            std::memcpy(&value, field->data(), wordSize);
        }
        return value >= 1 && value <= largest ? std::optional<qsizetype>(value) : std::nullopt;
    }

private:
    QByteArrayView rest_;
};

// An image over a part of `content`, which it keeps alive.
QImage imageWithin(const QByteArray& content, QByteArrayView pixels, qsizetype edge) {
    auto owner = std::make_unique<QByteArray>(content);
    const auto side = static_cast<int>(edge);
    return {reinterpret_cast<const uchar*>(pixels.data()),
            side,
            side,
            edge * wordSize,
            QImage::Format_ARGB32_Premultiplied,
            [](void* bytes) { delete static_cast<QByteArray*>(bytes); },
            owner.release()};
}

std::optional<KeptIcon> nextIcon(Reader& reader, const QByteArray& content) {
    const auto edge = reader.number(largestEdge);
    const auto kind = reader.number(standInKind);
    const auto length = reader.number(longestPath);
    if (!edge || !kind || !length) {
        return std::nullopt;
    }
    const auto path = reader.bytes(*length);
    const auto gap = reader.bytes(padding(*length));
    const auto pixels = reader.bytes(*edge * *edge * wordSize);
    if (!path || !gap || !pixels) {
        return std::nullopt;
    }
    return KeptIcon{QString::fromUtf8(*path), imageWithin(content, *pixels, *edge), *kind == standInKind};
}

} // namespace

QByteArray encodeIcons(const std::vector<KeptIcon>& icons) {
    QByteArray content = iconsHeading.toByteArray();
    for (const KeptIcon& icon : icons) {
        const int edge = icon.image.width();
        const QByteArray path = icon.path.toUtf8();
        if (edge == 0 || edge != icon.image.height() || edge > static_cast<int>(largestEdge) ||
            path.isEmpty() || path.size() > static_cast<qsizetype>(longestPath)) {
            continue;
        }
        appendNumber(content, edge);
        appendNumber(content, icon.isStandIn ? standInKind : ownKind);
        appendNumber(content, path.size());
        content.append(path).append(padding(path.size()), '\0');
        const QImage image = icon.image.convertToFormat(QImage::Format_ARGB32_Premultiplied);
        for (int y = 0; y < edge; ++y) {
            content.append(reinterpret_cast<const char*>(image.constScanLine(y)), edge * wordSize);
        }
    }
    return content;
}

std::vector<KeptIcon> decodeIcons(const QByteArray& content) {
    Reader reader(content);
    if (reader.bytes(iconsHeading.size()) != iconsHeading) {
        return {};
    }
    std::vector<KeptIcon> icons;
    while (!reader.atEnd()) {
        auto icon = nextIcon(reader, content);
        if (!icon) {
            return {};
        }
        icons.push_back(std::move(*icon));
    }
    return icons;
}

} // namespace amberquill
