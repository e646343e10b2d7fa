// Feeds of any bytes: each is refused, or gives items that keep the contract of their header. A second,
// simpler reader must agree on the number of items.
#include "Require.h"
#include "updates/updater/AddressPolicy.h"
#include "updates/updater/Feed.h"
#include "updates/updater/Version.h"

#include <QXmlStreamReader>
#include <cstdint>

using namespace amberquill;

namespace {

void requirePlain(const QString& text, qsizetype limit, bool hasLines) {
    require(text.size() <= limit && text.isValidUtf16() && text == text.trimmed());
    for (const QChar letter : text) {
        require(letter.category() != QChar::Other_Control || (hasLines && letter == u'\n'));
        require(letter < u'\u202A' || letter > u'\u202E');
        require(letter < u'\u2066' || letter > u'\u2069');
    }
}

void requirePage(const QUrl& page) {
    require(page.isEmpty() || mayFetch(page));
}

// What the second reader finds.
struct Counts {
    int items = 0;
    bool declaresEntities = false;
};

std::optional<Counts> countsIn(const QByteArray& bytes) {
    QXmlStreamReader reader(QString::fromUtf8(bytes));
    Counts counts;
    QStringList path;
    while (!reader.atEnd()) {
        reader.readNext();
        if (reader.isStartElement()) {
            path += reader.namespaceUri().isEmpty() ? reader.name().toString() : QStringLiteral("?");
            counts.items +=
                path == QStringList{QStringLiteral("rss"), QStringLiteral("channel"), QStringLiteral("item")}
                    ? 1
                    : 0;
        } else if (reader.isEndElement()) {
            path.removeLast();
        } else if (reader.isDTD()) {
            counts.declaresEntities = !reader.entityDeclarations().isEmpty();
        }
    }
    return reader.hasError() ? std::nullopt : std::optional(counts);
}

void requireItem(const FeedItem& item) {
    require(!item.version.isEmpty());
    for (const QString* const line : {&item.title, &item.version, &item.shortVersion,
                                      &item.minimumSystemVersion, &item.operatingSystem, &item.channel}) {
        requirePlain(*line, maximumFeedLine, false);
    }
    requirePlain(item.releaseNotes, maximumReleaseNotes, true);
    requirePage(item.releasePage);
    requirePage(item.releaseNotesPage);
    require(!item.enclosure || item.enclosure->length >= 0);
    require(compareVersions(item.version, item.version) == 0);
}

// The chosen item is one of the items, newer than the installed version, and no suitable item is newer.
void requireChoice(const std::vector<FeedItem>& items, const QString& installed) {
    const auto update = chooseUpdate(items, installed, QStringLiteral("6.1"), {}, std::nullopt);
    require(!update || std::find(items.begin(), items.end(), *update) != items.end());
    require(!update || compareVersions(update->version, installed) > 0);
    require(!update || update->channel.isEmpty());
    for (const FeedItem& item : items) {
        const bool fits =
            item.channel.isEmpty() && item.operatingSystem.isEmpty() && item.minimumSystemVersion.isEmpty();
        const bool isBetter = compareVersions(item.version, update ? update->version : installed) > 0;
        require(!fits || !isBetter);
        // The comparison is antisymmetric.
        require((compareVersions(item.version, installed) < 0) ==
                (compareVersions(installed, item.version) > 0));
    }
    require(!update || !chooseUpdate(items, installed, QStringLiteral("6.1"), {}, update->version));
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    const QByteArray bytes(reinterpret_cast<const char*>(data), static_cast<qsizetype>(size));
    const auto items = readFeed(bytes);
    if (!items) {
        return 0;
    }
    const auto counts = countsIn(bytes);
    require(counts && !counts->declaresEntities);
    require(items->size() <= maximumFeedItems && static_cast<int>(items->size()) <= counts->items);
    for (const FeedItem& item : *items) {
        requireItem(item);
    }
    requireChoice(*items, QStringLiteral("1.0"));
    if (!items->empty()) {
        requireChoice(*items, items->front().version);
    }
    return 0;
}
