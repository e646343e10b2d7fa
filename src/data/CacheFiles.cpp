#include "data/CacheFiles.h"

#include "data/DataLog.h"
#include "platform/common/Utf8.h"

#include <QByteArrayView>
#include <algorithm>
#include <cstring>
#include <memory>
#include <optional>

namespace amberquill {

namespace {

// The icon file: a heading, then for each icon its edge, its kind, the length of its path, the path and the
// pixels. All of them are aligned to the size of a pixel, so that an image can use the file's bytes in place.
// Numbers and pixels have the machine's byte order: the file stays on one machine.
constexpr QByteArrayView iconsHeading = "amberquill icons 002";
constexpr qsizetype wordSize = sizeof(quint32);
static_assert(iconsHeading.size() % wordSize == 0);

constexpr quint32 largestEdge = 1024;
constexpr quint32 longestPath = 64 * 1024;

constexpr quint32 ownIcon = 1;
constexpr quint32 genericIcon = 2;

void appendNumber(QByteArray& content, qsizetype number) {
    const auto value = static_cast<quint32>(number);
    content.append(reinterpret_cast<const char*>(&value), wordSize);
}

qsizetype padding(qsizetype size) {
    return (wordSize - size % wordSize) % wordSize;
}

class IconReader {
public:
    explicit IconReader(QByteArrayView rest)
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

// An image whose pixels are a part of `content`, which it keeps alive.
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

std::optional<StoredIcon> nextIcon(IconReader& reader, const QByteArray& content) {
    const auto edge = reader.number(largestEdge);
    const auto kind = reader.number(genericIcon);
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
    return StoredIcon{QString::fromUtf8(*path), imageWithin(content, *pixels, *edge), *kind == genericIcon};
}

// The name file: a heading, the language, the number of applications, then the path and the name of each.
// Every field ends with NUL, which no path and no name contains. The number shows whether the file is whole.
const QByteArrayView namesHeading = "amberquill names 1";

void appendField(QByteArray& content, const QByteArray& field) {
    content += field;
    content += '\0';
}

std::optional<QByteArrayView> takeField(QByteArrayView& rest) {
    const qsizetype end = rest.indexOf('\0');
    if (end < 0) {
        return std::nullopt;
    }
    const QByteArrayView field = rest.first(end);
    rest = rest.sliced(end + 1);
    return field;
}

QByteArray field(const QString& text) {
    return text.toUtf8().replace('\0', ' ');
}

} // namespace

QByteArray encodeIcons(const std::vector<StoredIcon>& icons) {
    QByteArray content = iconsHeading.toByteArray();
    for (const StoredIcon& icon : icons) {
        const int edge = icon.image.width();
        const QByteArray path = icon.path.toUtf8();
        if (edge == 0 || edge != icon.image.height() || edge > static_cast<int>(largestEdge) ||
            path.isEmpty() || path.size() > static_cast<qsizetype>(longestPath)) {
            continue;
        }
        appendNumber(content, edge);
        appendNumber(content, icon.isGeneric ? genericIcon : ownIcon);
        appendNumber(content, path.size());
        content.append(path).append(padding(path.size()), '\0');
        const QImage image = icon.image.convertToFormat(QImage::Format_ARGB32_Premultiplied);
        for (int y = 0; y < edge; ++y) {
            content.append(reinterpret_cast<const char*>(image.constScanLine(y)), edge * wordSize);
        }
    }
    return content;
}

std::vector<StoredIcon> decodeIcons(const QByteArray& content) {
    IconReader reader(content);
    if (reader.bytes(iconsHeading.size()) != iconsHeading) {
        qCDebug(dataLog) << "icon file refused: another format";
        return {};
    }
    std::vector<StoredIcon> icons;
    while (!reader.atEnd()) {
        auto icon = nextIcon(reader, content);
        if (!icon) {
            qCDebug(dataLog) << "icon file refused: truncated, or a wrong size";
            return {};
        }
        icons.push_back(std::move(*icon));
    }
    return icons;
}

QByteArray encodeNames(const QString& language, const std::vector<AppInfo>& apps) {
    QByteArray content;
    appendField(content, namesHeading.toByteArray());
    appendField(content, field(language));
    appendField(content, QByteArray::number(static_cast<qulonglong>(apps.size())));
    for (const AppInfo& app : apps) {
        appendField(content, field(app.path));
        appendField(content, field(app.name));
    }
    return content;
}

QHash<QString, QString> decodeNames(const QByteArray& content, const QString& language) {
    QByteArrayView rest = content;
    const auto head = takeField(rest);
    const auto writtenFor = takeField(rest);
    const auto countText = takeField(rest);
    if (!countText || *head != namesHeading || QString::fromUtf8(*writtenFor) != language) {
        qCDebug(dataLog) << "name file refused: another format or language";
        return {};
    }
    const qulonglong count = countText->toByteArray().toULongLong();
    QHash<QString, QString> names;
    // An entry has two bytes at least: a wrong count does not reserve more than the file can hold.
    names.reserve(
        static_cast<qsizetype>(std::min<qulonglong>(count, static_cast<qulonglong>(rest.size()) / 2)));
    for (qulonglong i = 0; i < count; ++i) {
        const auto path = takeField(rest);
        const auto name = takeField(rest);
        if (!name) {
            qCDebug(dataLog) << "name file refused: truncated";
            return {};
        }
        names.insert(textOfUtf8(*path), textOfUtf8(*name));
    }
    return rest.isEmpty() ? names : QHash<QString, QString>();
}

} // namespace amberquill
