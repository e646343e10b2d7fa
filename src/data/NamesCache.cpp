#include "data/NamesCache.h"

#include "platform/common/Utf8.h"

#include <QByteArrayView>
#include <algorithm>
#include <optional>

namespace amberquill {

namespace {

// Fields end with NUL, which neither a path nor a name can hold. The count of applications comes before them,
// so that a file cut short is told from a whole one.
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
        return {};
    }
    const qulonglong count = countText->toByteArray().toULongLong();
    QHash<QString, QString> names;
    // Two bytes at least stand for each: a made-up count reserves nothing.
    names.reserve(
        static_cast<qsizetype>(std::min<qulonglong>(count, static_cast<qulonglong>(rest.size()) / 2)));
    for (qulonglong i = 0; i < count; ++i) {
        const auto path = takeField(rest);
        const auto name = takeField(rest);
        if (!name) {
            return {};
        }
        names.insert(textOfUtf8(*path), textOfUtf8(*name));
    }
    return rest.isEmpty() ? names : QHash<QString, QString>();
}

} // namespace amberquill
