#include "data/LayoutCoding.h"

#include "data/JsonText.h"

#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <optional>

namespace amberquill {

namespace {

constexpr auto appKey = QLatin1StringView("app");
constexpr auto folderKey = QLatin1StringView("folder");
constexpr auto payloadKey = QLatin1StringView("_0");

DecodingError typeMismatch(const QString& expected, const QStringList& codingPath) {
    return {DecodingError::Kind::TypeMismatch, QStringLiteral("Expected ") + expected + QLatin1Char('.'),
            codingPath};
}

DecodingError keyNotFound(const QString& key, const QStringList& codingPath) {
    return {DecodingError::Kind::KeyNotFound,
            QStringLiteral("No value for the key ") + key + QLatin1Char('.'), codingPath};
}

// Only the canonical form counts, in upper or lower case; QUuid alone would take braces and missing dashes.
std::optional<QUuid> uuid(const QString& text) {
    constexpr qsizetype canonicalLength = 36;
    if (text.size() != canonicalLength) {
        return std::nullopt;
    }
    for (qsizetype i = 0; i < text.size(); ++i) {
        const bool dashPlace = i == 8 || i == 13 || i == 18 || i == 23;
        const char16_t unit = text[i].unicode();
        const bool hex = (unit >= u'0' && unit <= u'9') || (unit >= u'a' && unit <= u'f') ||
                         (unit >= u'A' && unit <= u'F');
        if (dashPlace ? unit != u'-' : !hex) {
            return std::nullopt;
        }
    }
    return QUuid::fromString(text);
}

Decoded<QString> decodeString(const QJsonObject& object, QLatin1StringView key,
                              const QStringList& codingPath) {
    const auto value = object.constFind(key);
    if (value == object.constEnd()) {
        return keyNotFound(key, codingPath);
    }
    if (!value->isString()) {
        return typeMismatch(QStringLiteral("a string"), codingPath + QStringList{key});
    }
    return value->toString();
}

Decoded<QStringList> decodePaths(const QJsonObject& object, QLatin1StringView key,
                                 const QStringList& codingPath) {
    const auto value = object.constFind(key);
    if (value == object.constEnd()) {
        return keyNotFound(key, codingPath);
    }
    if (!value->isArray()) {
        return typeMismatch(QStringLiteral("an array"), codingPath + QStringList{key});
    }
    const QJsonArray array = value->toArray();
    QStringList paths;
    paths.reserve(array.size());
    for (const QJsonValue path : array) {
        if (!path.isString()) {
            return typeMismatch(QStringLiteral("a string"),
                                codingPath + QStringList{key, QStringLiteral("Index %1").arg(paths.size())});
        }
        paths.append(path.toString());
    }
    return paths;
}

Decoded<Folder> decodeFolder(const QJsonValue& json, const QStringList& codingPath) {
    if (!json.isObject()) {
        return typeMismatch(QStringLiteral("an object"), codingPath);
    }
    const QJsonObject object = json.toObject();
    const auto idText = decodeString(object, QLatin1StringView("id"), codingPath);
    if (const auto* error = std::get_if<DecodingError>(&idText)) {
        return *error;
    }
    const auto id = uuid(std::get<QString>(idText));
    if (!id) {
        return DecodingError{DecodingError::Kind::DataCorrupted, QStringLiteral("Not a UUID."),
                             codingPath + QStringList{QStringLiteral("id")}};
    }
    auto name = decodeString(object, QLatin1StringView("name"), codingPath);
    if (const auto* error = std::get_if<DecodingError>(&name)) {
        return *error;
    }
    auto apps = decodePaths(object, QLatin1StringView("apps"), codingPath);
    if (const auto* error = std::get_if<DecodingError>(&apps)) {
        return *error;
    }
    return Folder{*id, std::get<QString>(std::move(name)), std::get<QStringList>(std::move(apps))};
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

Decoded<LaunchItem> decodeItem(const QJsonValue& json, const QStringList& codingPath) {
    if (!json.isObject()) {
        return typeMismatch(QStringLiteral("an object"), codingPath);
    }
    const QJsonObject object = json.toObject();
    const bool hasApp = object.contains(appKey);
    if (hasApp == object.contains(folderKey)) {
        return DecodingError{DecodingError::Kind::TypeMismatch,
                             QStringLiteral("Invalid number of keys found, expected one."), codingPath};
    }
    const QLatin1StringView key = hasApp ? appKey : folderKey;
    const QJsonValue nested = object.value(key);
    if (!nested.isObject()) {
        return typeMismatch(QStringLiteral("an object"), codingPath + QStringList{key});
    }
    const QJsonObject payload = nested.toObject();
    if (hasApp) {
        auto path = decodeString(payload, payloadKey, codingPath + QStringList{key});
        if (auto* error = std::get_if<DecodingError>(&path)) {
            return std::move(*error);
        }
        return LaunchItem::app(std::get<QString>(std::move(path)));
    }
    if (!payload.contains(payloadKey)) {
        return keyNotFound(payloadKey, codingPath + QStringList{key});
    }
    auto folder = decodeFolder(payload.value(payloadKey), codingPath + QStringList{key, payloadKey});
    if (auto* error = std::get_if<DecodingError>(&folder)) {
        return std::move(*error);
    }
    return LaunchItem::folder(std::get<Folder>(std::move(folder)));
}

Decoded<LaunchItems> decodeItems(const QJsonValue& json, const QStringList& codingPath) {
    if (!json.isArray()) {
        return typeMismatch(QStringLiteral("an array"), codingPath);
    }
    const QJsonArray array = json.toArray();
    LaunchItems items;
    items.reserve(static_cast<std::size_t>(array.size()));
    for (const QJsonValue element : array) {
        auto item = decodeItem(element, codingPath);
        if (auto* error = std::get_if<DecodingError>(&item)) {
            error->codingPath.insert(codingPath.size(), QStringLiteral("Index %1").arg(items.size()));
            return std::move(*error);
        }
        items.push_back(std::get<LaunchItem>(std::move(item)));
    }
    return items;
}

Decoded<LaunchItems> decodeItems(const QByteArray& text) {
    QJsonParseError error;
    const QJsonDocument document = QJsonDocument::fromJson(text, &error);
    if (error.error != QJsonParseError::NoError) {
        return DecodingError{DecodingError::Kind::DataCorrupted, error.errorString(), {}};
    }
    if (!document.isArray()) {
        return typeMismatch(QStringLiteral("an array"), {});
    }
    return decodeItems(QJsonValue(document.array()));
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
