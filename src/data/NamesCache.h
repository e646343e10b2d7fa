#pragma once

#include "data/LaunchItem.h"

#include <QByteArray>
#include <QHash>
#include <QString>
#include <vector>

namespace amberquill {

// The names of the applications as the last scan found them, kept in a file that may be deleted at any time,
// so that the first picture shows real names before the first scan is in. Never trusted over a scan.

// The file's content. `language` says in whose language the names are.
QByteArray encodeNames(const QString& language, const std::vector<AppInfo>& apps);

// Names by path. Empty for anything that `encodeNames` did not write whole, or wrote for another language.
QHash<QString, QString> decodeNames(const QByteArray& content, const QString& language);

} // namespace amberquill
