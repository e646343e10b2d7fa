#include "data/RememberedItem.h"

#include "data/DataLog.h"
#include "data/IsoDate.h"
#include "data/JsonReader.h"
#include "data/JsonWriter.h"

#include <utility>

namespace amberquill {

namespace {

void appendPlace(QByteArray& json, const RememberedItem& item) {
    const bool isFolder = item.id.startsWith(QLatin1String("f:"));
    json += isFolder ? R"({"folder":)" : R"({"app":)";
    appendJsonString(json, QStringView(item.id).sliced(2));
    if (isFolder) {
        json += R"(,"name":)";
        appendJsonString(json, item.folderName);
    }
    if (item.folder) {
        json += R"(,"in":)";
        appendJsonString(json, canonicalText(*item.folder));
    }
    json += R"(,"after":)";
    appendJsonString(json, item.after);
    json += R"(,"before":)";
    appendJsonString(json, item.before);
    json += R"(,"index":)" + QByteArray::number(item.index) + R"(,"since":)";
    appendJsonString(json, isoText(item.since));
    json += '}';
}

std::optional<QUuid> readPlaceUuid(JsonReader& reader) {
    const QUuid id = QUuid::fromString(reader.stringOrSkip().value_or(QString()));
    return id.isNull() ? std::nullopt : std::optional(id);
}

std::optional<RememberedItem> readPlace(JsonReader& reader) {
    if (reader.next() != JsonReader::Kind::Object) {
        reader.skip();
        return std::nullopt;
    }
    RememberedItem item;
    std::optional<std::chrono::sys_seconds> since;
    bool isValid = true;
    reader.enterObject();
    while (const auto key = reader.nextKey()) {
        if (*key == u"app") {
            const auto path = reader.stringOrSkip();
            item.id = path && !path->isEmpty() ? appItemId(*path) : QString();
        } else if (*key == u"folder") {
            const auto id = readPlaceUuid(reader);
            item.id = id ? folderItemId(*id) : QString();
        } else if (*key == u"in") {
            item.folder = readPlaceUuid(reader);
            isValid = isValid && item.folder.has_value();
        } else if (*key == u"name") {
            item.folderName = reader.stringOrSkip().value_or(QString());
        } else if (*key == u"after") {
            item.after = reader.stringOrSkip().value_or(QString());
        } else if (*key == u"before") {
            item.before = reader.stringOrSkip().value_or(QString());
        } else if (*key == u"index") {
            item.index = static_cast<qsizetype>(reader.integerOrSkip().value_or(0));
        } else if (*key == u"since") {
            since = dateFromIsoText(reader.stringOrSkip().value_or(QString()));
        } else {
            reader.skip();
        }
    }
    if (!isValid || !since || item.id.isEmpty() ||
        (item.folder && !item.id.startsWith(QLatin1String("a:")))) {
        return std::nullopt;
    }
    item.since = *since;
    return item;
}

std::vector<RememberedItem> readPlaces(JsonReader& reader) {
    std::vector<RememberedItem> places;
    if (reader.next() != JsonReader::Kind::Array) {
        reader.skip();
        return places;
    }
    int skipped = 0;
    reader.enterArray();
    while (reader.nextElement()) {
        if (auto place = readPlace(reader)) {
            places.push_back(*std::move(place));
        } else {
            ++skipped;
        }
    }
    if (skipped > 0) {
        qCDebug(dataLog) << "invalid places skipped:" << skipped;
    }
    return places;
}

} // namespace

QByteArray encodePlaces(const std::vector<RememberedItem>& places) {
    QByteArray json = R"({"places":[)";
    bool isFirst = true;
    for (const RememberedItem& item : places) {
        if (!std::exchange(isFirst, false)) {
            json += ',';
        }
        appendPlace(json, item);
    }
    json += "]}";
    return json;
}

std::optional<std::vector<RememberedItem>> decodePlaces(QByteArrayView text) {
    if (text.size() > largestPlacesText) {
        return std::nullopt;
    }
    JsonReader reader(text);
    if (reader.next() != JsonReader::Kind::Object) {
        return std::nullopt;
    }
    std::optional<std::vector<RememberedItem>> places;
    reader.enterObject();
    while (const auto key = reader.nextKey()) {
        if (*key == u"places") {
            places = readPlaces(reader);
        } else {
            reader.skip();
        }
    }
    if (!reader.isAtEnd()) {
        qCDebug(dataLog) << "places refused: not JSON";
        return std::nullopt;
    }
    return places;
}

} // namespace amberquill
