// The files of the cache folder: the icons and names for the first frame of a start, before anything has been
// decoded or scanned. They may be deleted at any time, and a scan and a decoded icon always replace them.
#pragma once

#include "data/LaunchItem.h"

#include <QByteArray>
#include <QHash>
#include <QImage>
#include <QString>
#include <vector>

namespace amberquill {

// An application's icon as it was last shown.
struct StoredIcon {
    QString path;           // the application's
    QImage image;           // square, premultiplied ARGB, device pixels
    bool isGeneric = false; // the application has no icon of its own

    bool operator==(const StoredIcon&) const = default;
};

// The icon file. Leaves out icons that are not square.
QByteArray encodeIcons(const std::vector<StoredIcon>& icons);

// Empty for any content that `encodeIcons` did not write as a whole. The images share the memory of
// `content`.
std::vector<StoredIcon> decodeIcons(const QByteArray& content);

// The name file. `language` is the language of the names.
QByteArray encodeNames(const QString& language, const std::vector<AppInfo>& apps);

// Names by path. Empty for any content that `encodeNames` did not write as a whole, or wrote for another
// language.
QHash<QString, QString> decodeNames(const QByteArray& content, const QString& language);

} // namespace amberquill
