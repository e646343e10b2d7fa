#include "updates/Feed.h"
#include "updates/Version.h"

#include <QSysInfo>

namespace amberquill {
namespace {

bool fits(const FeedItem& item, const QString& systemVersion, const QSet<QString>& channels) {
    const bool isForSystem = item.operatingSystem.isEmpty() ||
                             item.operatingSystem.compare(QLatin1String("linux"), Qt::CaseInsensitive) == 0;
    return isForSystem && (item.channel.isEmpty() || channels.contains(item.channel)) &&
           (item.minimumSystemVersion.isEmpty() || !isNewer(item.minimumSystemVersion, systemVersion));
}

} // namespace

std::optional<FeedItem> chooseUpdate(const std::vector<FeedItem>& items, const QString& installedVersion,
                                     const QString& systemVersion, const QSet<QString>& channels,
                                     const std::optional<QString>& skipped) {
    const FeedItem* newest = nullptr;
    for (const FeedItem& item : items) {
        if (fits(item, systemVersion, channels) &&
            (newest == nullptr || isNewer(item.version, newest->version))) {
            newest = &item;
        }
    }
    const bool isUpdate = newest != nullptr && isNewer(newest->version, installedVersion) &&
                          (!skipped || isNewer(newest->version, *skipped));
    return isUpdate ? std::optional(*newest) : std::nullopt;
}

QString systemVersion() {
    const QString version = QSysInfo::kernelVersion();
    const auto* const end = std::find_if_not(version.begin(), version.end(), [](QChar c) {
        return c == QLatin1Char('.') || (c >= QLatin1Char('0') && c <= QLatin1Char('9'));
    });
    return QString(version.begin(), end - version.begin());
}

} // namespace amberquill
