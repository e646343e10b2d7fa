#pragma once

#include "data/LaunchItem.h"

#include <QByteArray>
#include <QByteArrayView>
#include <QString>
#include <chrono>
#include <optional>

namespace amberquill {

// A layout as it is handed from one machine to another.
struct LayoutFile {
    static inline const QString ownFormat = QStringLiteral("amberquill-layout");
    static constexpr qint64 ownVersion = 1;

    QString format = ownFormat;
    qint64 version = ownVersion;
    std::chrono::sys_seconds exportedAt; // years 1 to 9999
    qint64 columns = 0;
    qint64 rows = 0;
    LaunchItems items;

    bool operator==(const LayoutFile&) const = default;
};

// The items with each of their paths replaced.
template<typename Replace>
LaunchItems withPaths(LaunchItems items, Replace replace) {
    for (LaunchItem& item : items) {
        if (const QString* path = item.asApp()) {
            item = LaunchItem::app(replace(*path));
            continue;
        }
        Folder folder = *item.asFolder();
        for (QString& path : folder.apps) {
            path = replace(path);
        }
        item = LaunchItem::folder(std::move(folder));
    }
    return items;
}

// Pretty printed, the keys of each object sorted, every "/" escaped; the date is ISO 8601 in UTC.
QByteArray encodeLayoutFile(const LayoutFile& file);

// None: the text is not JSON, a key is missing, a value is of the wrong type, a number is no integer, or the
// date is none. Unknown keys are ignored. The format may be any; whose it is the caller decides.
std::optional<LayoutFile> decodeLayoutFile(QByteArrayView text);

} // namespace amberquill
