#include "data/LayoutFile.h"

#include "data/DataLog.h"
#include "data/IsoDate.h"
#include "data/JsonReader.h"
#include "data/JsonWriter.h"
#include "data/LayoutCoding.h"

#include <utility>

namespace amberquill {

namespace {

void writeFolder(PrettyJsonWriter& json, const Folder& folder) {
    json.beginObject();
    json.key("apps");
    json.beginArray();
    for (const QString& path : folder.apps) {
        json.string(path);
    }
    json.endArray();
    json.key("id");
    json.string(canonicalText(folder.id));
    json.key("name");
    json.string(folder.name);
    json.endObject();
}

void writeItem(PrettyJsonWriter& json, const LaunchItem& item) {
    json.beginObject();
    json.key(item.isFolder() ? "folder" : "app");
    json.beginObject();
    json.key("_0");
    if (const Folder* folder = item.asFolder()) {
        writeFolder(json, *folder);
    } else {
        json.string(*item.asApp());
    }
    json.endObject();
    json.endObject();
}

std::optional<std::chrono::sys_seconds> readDate(JsonReader& reader) {
    const auto text = reader.stringOrSkip();
    return text ? dateFromIsoText(*text) : std::nullopt;
}

std::optional<LaunchItems> readList(JsonReader& reader) {
    auto items = readItems(reader);
    if (const auto* error = std::get_if<DecodingError>(&items)) {
        qCDebug(dataLog).noquote() << "items of the exchange file not decoded:" << error->description << "at"
                                   << error->codingPath.join(u'/');
        return std::nullopt;
    }
    return std::get<LaunchItems>(std::move(items));
}

} // namespace

QByteArray encodeLayoutFile(const LayoutFile& file) {
    PrettyJsonWriter json;
    json.beginObject();
    json.key("columns");
    json.integer(file.columns);
    json.key("exportedAt");
    json.string(isoText(file.exportedAt));
    json.key("format");
    json.string(file.format);
    json.key("items");
    json.beginArray();
    for (const LaunchItem& item : file.items) {
        writeItem(json, item);
    }
    json.endArray();
    json.key("rows");
    json.integer(file.rows);
    json.key("version");
    json.integer(file.version);
    json.endObject();
    return json.text();
}

std::optional<LayoutFile> decodeLayoutFile(QByteArrayView text) {
    if (text.size() > largestLayoutText) {
        qCDebug(dataLog) << "exchange file refused: too large," << text.size() << "bytes";
        return std::nullopt;
    }
    JsonReader reader(text);
    if (reader.next() != JsonReader::Kind::Object) {
        qCDebug(dataLog) << "exchange file refused: no JSON object";
        return std::nullopt;
    }
    std::optional<QString> format;
    std::optional<qint64> version;
    std::optional<std::chrono::sys_seconds> exportedAt;
    std::optional<qint64> columns;
    std::optional<qint64> rows;
    std::optional<LaunchItems> items;
    reader.enterObject();
    while (const auto key = reader.nextKey()) {
        if (*key == u"format") {
            format = reader.stringOrSkip();
        } else if (*key == u"version") {
            version = reader.integerOrSkip();
        } else if (*key == u"exportedAt") {
            exportedAt = readDate(reader);
        } else if (*key == u"columns") {
            columns = reader.integerOrSkip();
        } else if (*key == u"rows") {
            rows = reader.integerOrSkip();
        } else if (*key == u"items") {
            items = readList(reader);
        } else {
            reader.skip();
        }
    }
    if (!reader.isAtEnd() || !format || !version || !exportedAt || !columns || !rows || !items) {
        qCDebug(dataLog) << "exchange file refused: whole" << reader.isAtEnd() << "format"
                         << format.has_value() << "version" << version.has_value() << "exportedAt"
                         << exportedAt.has_value() << "columns" << columns.has_value() << "rows"
                         << rows.has_value() << "items" << items.has_value();
        return std::nullopt;
    }
    return LayoutFile{*std::move(format), *version, *exportedAt, *columns, *rows, *std::move(items)};
}

} // namespace amberquill
