#pragma once

#include "data/LaunchItem.h"

#include <QByteArray>
#include <QByteArrayView>
#include <QString>
#include <chrono>
#include <optional>

namespace amberquill {

// A layout that is exported on one machine and imported on another.
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

// The items with `replace` applied to every path.
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

// Indented, the keys of every object sorted, every "/" escaped, the date as ISO 8601 in UTC.
QByteArray encodeLayoutFile(const LayoutFile& file);

// None: the text is not JSON, a key is missing, a value has the wrong type, a number is no integer, or the
// date is invalid. Unknown keys are ignored. Any `format` is accepted: the caller checks it.
std::optional<LayoutFile> decodeLayoutFile(QByteArrayView text);

} // namespace amberquill
