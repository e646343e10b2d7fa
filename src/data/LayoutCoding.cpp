#include "data/LayoutCoding.h"

#include "data/DataLog.h"
#include "data/JsonReader.h"
#include "data/JsonWriter.h"

#include <optional>
#include <utility>

namespace amberquill {

namespace {

constexpr auto appKey = QStringView(u"app");
constexpr auto folderKey = QStringView(u"folder");
constexpr auto payloadKey = QStringView(u"_0");
constexpr auto idKey = QStringView(u"id");
constexpr auto nameKey = QStringView(u"name");
constexpr auto appsKey = QStringView(u"apps");

DecodingError typeMismatch(const QString& expected) {
    return {DecodingError::Kind::TypeMismatch, QStringLiteral("Expected ") + expected + QLatin1Char('.'), {}};
}

DecodingError keyNotFound(QStringView key) {
    return {DecodingError::Kind::KeyNotFound,
            QStringLiteral("No value for the key ") + key.toString() + QLatin1Char('.'),
            {}};
}

QString indexKey(std::size_t index) {
    return QStringLiteral("Index %1").arg(index);
}

DecodingError within(QStringView key, DecodingError error) {
    error.codingPath.prepend(key.toString());
    return error;
}

// The value of a key, after the whole object has been read.
template<typename Value>
Decoded<Value> valueFor(QStringView key, std::optional<Decoded<Value>> read) {
    if (!read) {
        return keyNotFound(key);
    }
    if (auto* error = std::get_if<DecodingError>(&*read)) {
        return within(key, std::move(*error));
    }
    return *std::move(read);
}

// Only the canonical form, in upper or lower case. QUuid alone also reads other forms.
std::optional<QUuid> uuid(const QString& text) {
    const QUuid id = QUuid::fromString(text);
    const bool isCanonical = id.toString(QUuid::WithoutBraces).compare(text, Qt::CaseInsensitive) == 0;
    return isCanonical ? std::optional(id) : std::nullopt;
}

// Each of these reads exactly one value, of any kind.

Decoded<QString> readText(JsonReader& reader) {
    auto text = reader.stringOrSkip();
    return text ? Decoded<QString>(*std::move(text)) : typeMismatch(QStringLiteral("a string"));
}

Decoded<QUuid> readUuid(JsonReader& reader) {
    auto text = readText(reader);
    if (auto* error = std::get_if<DecodingError>(&text)) {
        return std::move(*error);
    }
    const auto id = uuid(std::get<QString>(text));
    return id ? Decoded<QUuid>(*id)
              : DecodingError{DecodingError::Kind::DataCorrupted, QStringLiteral("Not a UUID."), {}};
}

template<typename List, typename Read>
Decoded<List> readList(JsonReader& reader, Read readElement) {
    if (reader.next() != JsonReader::Kind::Array) {
        reader.skip();
        return typeMismatch(QStringLiteral("an array"));
    }
    List list;
    std::optional<DecodingError> failure;
    reader.enterArray();
    while (reader.nextElement()) {
        if (failure) {
            reader.skip();
            continue;
        }
        auto element = readElement(reader);
        if (auto* error = std::get_if<DecodingError>(&element)) {
            failure = within(indexKey(static_cast<std::size_t>(list.size())), std::move(*error));
        } else {
            list.push_back(std::get<typename List::value_type>(std::move(element)));
        }
    }
    if (failure) {
        return *std::move(failure);
    }
    return list;
}

Decoded<Folder> readFolder(JsonReader& reader) {
    if (reader.next() != JsonReader::Kind::Object) {
        reader.skip();
        return typeMismatch(QStringLiteral("an object"));
    }
    std::optional<Decoded<QUuid>> id;
    std::optional<Decoded<QString>> name;
    std::optional<Decoded<QStringList>> apps;
    reader.enterObject();
    while (const auto key = reader.nextKey()) {
        if (*key == idKey) {
            id = readUuid(reader);
        } else if (*key == nameKey) {
            name = readText(reader);
        } else if (*key == appsKey) {
            apps = readList<QStringList>(reader, readText);
        } else {
            reader.skip();
        }
    }
    auto readId = valueFor(idKey, std::move(id));
    auto readName = valueFor(nameKey, std::move(name));
    auto readApps = valueFor(appsKey, std::move(apps));
    for (auto* error : {std::get_if<DecodingError>(&readId), std::get_if<DecodingError>(&readName),
                        std::get_if<DecodingError>(&readApps)}) {
        if (error != nullptr) {
            return std::move(*error);
        }
    }
    return Folder{std::get<QUuid>(readId), std::get<QString>(std::move(readName)),
                  std::get<QStringList>(std::move(readApps))};
}

// The object that holds the payload of an item.
template<typename Read>
auto readPayload(JsonReader& reader, Read readValue) {
    using Payload = decltype(readValue(reader));
    if (reader.next() != JsonReader::Kind::Object) {
        reader.skip();
        return Payload(typeMismatch(QStringLiteral("an object")));
    }
    std::optional<Payload> payload;
    reader.enterObject();
    while (const auto key = reader.nextKey()) {
        if (*key == payloadKey) {
            payload = readValue(reader);
        } else {
            reader.skip();
        }
    }
    return valueFor(payloadKey, std::move(payload));
}

Decoded<LaunchItem> readItem(JsonReader& reader) {
    if (reader.next() != JsonReader::Kind::Object) {
        reader.skip();
        return typeMismatch(QStringLiteral("an object"));
    }
    std::optional<Decoded<QString>> app;
    std::optional<Decoded<Folder>> folder;
    reader.enterObject();
    while (const auto key = reader.nextKey()) {
        if (*key == appKey) {
            app = readPayload(reader, readText);
        } else if (*key == folderKey) {
            folder = readPayload(reader, readFolder);
        } else {
            reader.skip();
        }
    }
    if (app.has_value() == folder.has_value()) {
        return DecodingError{DecodingError::Kind::TypeMismatch,
                             QStringLiteral("Invalid number of keys found, expected one."),
                             {}};
    }
    if (app) {
        auto path = valueFor(appKey, std::move(app));
        if (auto* error = std::get_if<DecodingError>(&path)) {
            return std::move(*error);
        }
        return LaunchItem::app(std::get<QString>(std::move(path)));
    }
    auto payload = valueFor(folderKey, std::move(folder));
    if (auto* error = std::get_if<DecodingError>(&payload)) {
        return std::move(*error);
    }
    return LaunchItem::folder(std::get<Folder>(std::move(payload)));
}

void appendFolder(QByteArray& json, const Folder& folder) {
    json += R"({"folder":{"_0":{"id":)";
    appendJsonString(json, canonicalText(folder.id));
    json += R"(,"name":)";
    appendJsonString(json, folder.name);
    json += R"(,"apps":[)";
    for (qsizetype i = 0; i < folder.apps.size(); ++i) {
        if (i > 0) {
            json += ',';
        }
        appendJsonString(json, folder.apps[i]);
    }
    json += "]}}}";
}

void appendItem(QByteArray& json, const LaunchItem& item) {
    if (const Folder* folder = item.asFolder()) {
        appendFolder(json, *folder);
        return;
    }
    json += R"({"app":{"_0":)";
    appendJsonString(json, *item.asApp());
    json += "}}";
}

} // namespace

Decoded<LaunchItems> readItems(JsonReader& reader) {
    return readList<LaunchItems>(reader, readItem);
}

Decoded<LaunchItems> decodeItems(QByteArrayView text) {
    Decoded<LaunchItems> items;
    if (text.size() > largestLayoutText) {
        items = DecodingError{DecodingError::Kind::DataCorrupted, QStringLiteral("Too large."), {}};
    } else {
        JsonReader reader(text);
        items = readItems(reader);
        if (!reader.isAtEnd()) {
            items = DecodingError{DecodingError::Kind::DataCorrupted, QStringLiteral("Not JSON."), {}};
        }
    }
    if (const auto* error = std::get_if<DecodingError>(&items)) {
        qCDebug(dataLog).noquote() << "layout not decoded:" << error->description << "at"
                                   << error->codingPath.join(u'/');
    }
    return items;
}

QByteArray encodeItem(const LaunchItem& item) {
    QByteArray json;
    appendItem(json, item);
    return json;
}

QByteArray encodeItems(const LaunchItems& items) {
    QByteArray json = "[";
    for (const LaunchItem& item : items) {
        if (json.size() > 1) {
            json += ',';
        }
        appendItem(json, item);
    }
    json += ']';
    return json;
}

} // namespace amberquill
